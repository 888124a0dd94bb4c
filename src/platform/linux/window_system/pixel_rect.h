#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "base/rect.h"

namespace vellora {

// A rectangle of device pixels within what the X protocol can carry, which is also within what the
// other window systems can; never without area.
struct PixelRect {
  std::int16_t x = 0;
  std::int16_t y = 0;
  std::uint16_t width = 1;
  std::uint16_t height = 1;
  bool operator==(const PixelRect&) const = default;

  int right() const { return x + width; }
  int bottom() const { return y + height; }
};

// Each edge goes to the nearest pixel; what lies outside the range, and what is no number, is
// brought inside.
PixelRect nearestPixels(const Rect& pixels);

// The part of `rect` within a window of that size; nothing when it has none.
std::optional<PixelRect> partWithin(const PixelRect& rect, const PixelRect& frame);

// The smallest rectangle around all of them, of which there is at least one.
PixelRect boundsOf(const std::vector<PixelRect>& rects);

}  // namespace vellora
