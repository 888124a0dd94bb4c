#pragma once

#include <optional>
#include <string>
#include <vector>

#include "controller/model/world.h"

// Matching and placing of captions for the model's world, whose texts are ASCII and whose boxes
// have positive sizes. Lengths are points, y grows downward.
namespace vellora::model {

// Letters and digits, small.
std::string keyOf(const std::string& text);
// The translations of one to six lines that together say what the row says; empty when none do.
std::string plainLookup(const std::string& row, const std::vector<Line>& lines);
bool namesTrack(const std::string& shown, const std::string& title, const std::string& artist);

// Nothing where the two do not meet; boxes that touch do.
std::optional<Box> commonPart(const Box& a, const Box& b);
// By the fake painter's measures: lines of 20 points, each of `FakePainter::charactersPerLine` as
// the test sets it.
double captionHeight(const std::string& text, double font);
std::optional<Box> captionPlace(const Box& row, const std::optional<Box>& next, const Box& viewport,
                                double height, double offset);
double softnessOf(const Box& row, const Box& viewport);

inline constexpr int charactersPerLine = 16;

}  // namespace vellora::model
