#include "platform/linux/wayland/panel/standing.h"

#include <algorithm>
#include <cmath>

namespace vellora {
namespace {

constexpr int mostPoints = 24;
constexpr double rounding = 1e-6;

// A surface along one axis.
struct Span {
  int first = 0;  // points
  int length = 1;
  int firstPixel = 0;
  int pixels = 1;
};

// Around the pixels from `begin` to `end` of an output, of which there is at least one.
Span spanAround(int begin, int end, double scale) {
  const int step = pointsToWholePixels(scale);
  const double stepPixels = step * scale;
  const int first = static_cast<int>(std::floor(begin / stepPixels + rounding)) * step;
  const int last =
      std::max(static_cast<int>(std::ceil(end / stepPixels - rounding)) * step, first + step);
  const int firstPixel = static_cast<int>(std::lround(first * scale));
  return {first, last - first, firstPixel,
          static_cast<int>(std::lround(last * scale)) - firstPixel};
}

}  // namespace

PixelRect Standing::surfacePixels() const {
  return {0, 0, static_cast<std::uint16_t>(pixelWidth), static_cast<std::uint16_t>(pixelHeight)};
}

std::optional<Standing> standingOn(const Output& output, const Rect& frame) {
  const double scale = output.scale;
  const Rect there = frame.standardized().offsetBy(-output.place.x, -output.place.y);
  const PixelRect pixels =
      nearestPixels({there.x * scale, there.y * scale, there.width * scale, there.height * scale});
  const PixelRect screen = nearestPixels(
      {0, 0, std::max(output.pixels.width, 1.0), std::max(output.pixels.height, 1.0)});
  const auto part = partWithin(pixels, screen);
  if (!part) return std::nullopt;
  const Span across = spanAround(part->x, part->right(), scale);
  const Span down = spanAround(part->y, part->bottom(), scale);
  return Standing{
      .output = output.id,
      .scale = scale,
      .left = across.first,
      .top = down.first,
      .width = across.length,
      .height = down.length,
      .pixelWidth = across.pixels,
      .pixelHeight = down.pixels,
      .frameX = pixels.x - across.firstPixel,
      .frameY = pixels.y - down.firstPixel,
      .visible = {static_cast<std::int16_t>(part->x - across.firstPixel),
                  static_cast<std::int16_t>(part->y - down.firstPixel), part->width, part->height}};
}

int pointsToWholePixels(double scale) {
  for (int points = 1; points <= mostPoints; ++points) {
    const double pixels = points * scale;
    if (std::abs(pixels - std::round(pixels)) < rounding) return points;
  }
  return 1;
}

}  // namespace vellora
