#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/rect.h"

namespace vellora {

// An output of the compositor. Points are those of the layout: origin at its top left, y downward.
struct Output {
  std::uint32_t id =
      0;             // the compositor's number for it, given to no other while this one is there
  std::string name;  // such as "DP-1"; empty where the compositor does not tell
  Rect place;        // points; whole numbers
  Size pixels;       // as it is turned
  double scale = 1;  // pixels per point
  bool operator==(const Output&) const = default;
};

// All outputs, in the order in which the compositor told of them.
struct OutputLayout {
  std::vector<Output> outputs;

  // The one with that number; null when there is none.
  const Output* find(std::uint32_t id) const;
  // The one at the layout's origin, else the first; null when there is none.
  const Output* primary() const;
  // Points; nothing when there is no output.
  std::optional<double> primaryHeight() const;
  std::optional<double> primaryScale() const;
  double largestScale() const;  // 1 when there is no output

  // A rectangle of the window-system coordinates in which panels are placed (origin at the bottom
  // left of the primary output, y upward), in the layout.
  Rect layoutRect(const Rect& windowRect) const;

  // The output on which most of `rect` lies, in points of the layout: of two with as much, the one
  // with the number `present`, else the first. Null when it lies on none.
  const Output* under(const Rect& rect, std::uint32_t present) const;

  bool operator==(const OutputLayout&) const = default;
};

// How many pixels make a point of an output with that many pixels and, cut or rounded to whole
// ones, that many points: the simplest ratio that gives these, of those that compositors offer.
// `preferred` is what the compositor calls its preference, and is taken where it fits. Source of
// the steps: the fractional scale protocol counts in 120ths.
double outputScale(const Size& pixels, const Size& points,
                   std::optional<double> preferred = std::nullopt);

}  // namespace vellora
