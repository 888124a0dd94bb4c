#include "platform/linux/window_system/pixel_rect.h"

#include <algorithm>
#include <cmath>

namespace vellora {
namespace {

constexpr double lowest = -32768;
constexpr double highest = 32767;

double nearest(double value) {
  if (std::isnan(value)) return 0;
  return std::clamp(std::round(value), lowest, highest);
}

}  // namespace

PixelRect nearestPixels(const Rect& pixels) {
  const double left = nearest(pixels.minX());
  const double top = nearest(pixels.minY());
  const double width = std::clamp(nearest(pixels.maxX()) - left, 1.0, highest);
  const double height = std::clamp(nearest(pixels.maxY()) - top, 1.0, highest);
  return {static_cast<std::int16_t>(left), static_cast<std::int16_t>(top),
          static_cast<std::uint16_t>(width), static_cast<std::uint16_t>(height)};
}

std::optional<PixelRect> partWithin(const PixelRect& rect, const PixelRect& frame) {
  const int left = std::max<int>(rect.x, 0);
  const int top = std::max<int>(rect.y, 0);
  const int right = std::min<int>(rect.right(), frame.width);
  const int bottom = std::min<int>(rect.bottom(), frame.height);
  if (left >= right || top >= bottom) return std::nullopt;
  return PixelRect{static_cast<std::int16_t>(left), static_cast<std::int16_t>(top),
                   static_cast<std::uint16_t>(right - left),
                   static_cast<std::uint16_t>(bottom - top)};
}

PixelRect boundsOf(const std::vector<PixelRect>& rects) {
  int left = 32767;
  int top = 32767;
  int right = -32768;
  int bottom = -32768;
  for (const PixelRect& rect : rects) {
    left = std::min<int>(left, rect.x);
    top = std::min<int>(top, rect.y);
    right = std::max(right, rect.right());
    bottom = std::max(bottom, rect.bottom());
  }
  return nearestPixels({static_cast<double>(left), static_cast<double>(top),
                        static_cast<double>(right - left), static_cast<double>(bottom - top)});
}

}  // namespace vellora
