#pragma once

#include <string>
#include <vector>

#include "companion/view/view_state.h"

namespace vellora::companion {

enum class Style { plain, strong, faint };

struct ScreenLine {
  std::string text;
  Style style = Style::plain;

  bool operator==(const ScreenLine&) const = default;
};

// What a terminal of that size shows: at most `rows` lines, each at most `columns` wide and free of
// control characters. From the top: the song, its place, the lines about the sung one with their
// translations; at the bottom the overlay's status line, the captions' settings and the keys. Where
// there is little room the lines about the sung one go first. Pure.
std::vector<ScreenLine> screenOf(const ViewState& state, int columns, int rows);

// "▶ 1:23 ━━━━━━────── 4:05" in at most `columns`.
std::string positionBar(const ViewState& state, int columns);

// "0.5 s later", "1.2 s earlier". Pure.
std::string shiftText(int milliseconds);

}  // namespace vellora::companion
