#include "platform/linux/drawing/plate.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace vellora {

namespace {

// A colour's ARGB32 pixels, premultiplied. What is no number counts as 0.
class Ink {
 public:
  explicit Ink(const Color& color)
      : alpha_(255 * bounded(color.alpha)),
        red_(alpha_ * bounded(color.red)),
        green_(alpha_ * bounded(color.green)),
        blue_(alpha_ * bounded(color.blue)) {}

  // `coverage` is from 0 to 1.
  std::uint32_t pixel(double coverage) const {
    const auto byte = [coverage](double value) {
      return static_cast<std::uint32_t>(value * coverage + 0.5);
    };
    return byte(alpha_) << 24 | byte(red_) << 16 | byte(green_) << 8 | byte(blue_);
  }

 private:
  static double bounded(double part) { return std::fmin(std::fmax(part, 0), 1); }

  double alpha_, red_, green_, blue_;
};

// How much of a pixel the shape covers, by the distance of the pixel's middle from its outline:
// exact at straight edges, within an eighth at the corners.
class RoundedRectangle {
 public:
  RoundedRectangle(const Rect& rect, double radius)
      : middleX_(rect.midX()),
        middleY_(rect.midY()),
        straightX_(rect.width / 2 - radius),
        straightY_(rect.height / 2 - radius),
        radius_(radius) {}

  double coverage(double x, double y) const {
    const double beyondX = std::abs(x - middleX_) - straightX_;
    const double beyondY = std::abs(y - middleY_) - straightY_;
    if (beyondX <= 0 || beyondY <= 0) return within(beyondX) * within(beyondY);
    return within(std::sqrt(beyondX * beyondX + beyondY * beyondY));
  }

  // Whether that row crosses no circle.
  bool isStraight(double y) const { return std::abs(y - middleY_) <= straightY_; }

 private:
  double within(double distance) const { return std::clamp(0.5 + radius_ - distance, 0.0, 1.0); }

  double middleX_, middleY_, straightX_, straightY_, radius_;
};

int cut(double pixel, int limit) {
  return static_cast<int>(std::clamp(pixel, 0.0, static_cast<double>(limit)));
}

}  // namespace

void fillPlate(cairo_surface_t* pixels, const Rect& plate, double radius, const Color& color) {
  const Rect rect = plate.standardized();
  if (rect.isEmpty() || !std::isfinite(rect.x + rect.y + rect.width + rect.height)) return;
  const double corner = std::min({std::fmax(radius, 0), rect.width / 2, rect.height / 2});
  const RoundedRectangle shape(rect, corner);
  const Ink ink(color);
  const int width = cairo_image_surface_get_width(pixels);
  const int height = cairo_image_surface_get_height(pixels);
  const int left = cut(std::floor(rect.x), width);
  const int right = cut(std::ceil(rect.maxX()), width);
  const int top = cut(std::floor(rect.y), height);
  const int bottom = cut(std::ceil(rect.maxY()), height);

  cairo_surface_flush(pixels);
  unsigned char* data = cairo_image_surface_get_data(pixels);
  const std::ptrdiff_t stride = cairo_image_surface_get_stride(pixels);
  for (int y = top; y < bottom; ++y) {
    auto* row = reinterpret_cast<std::uint32_t*>(data + y * stride);
    const double middle = y + 0.5;
    // Between its ends a row is even.
    const int end = shape.isStraight(middle) ? 1 : cut(std::ceil(corner) + 1, width);
    const int evenLeft = std::min(left + end, right);
    const int evenRight = std::max(right - end, evenLeft);
    const auto fill = [&](int from, int to) {
      for (int x = from; x < to; ++x) {
        row[x] = ink.pixel(shape.coverage(x + 0.5, middle));
      }
    };
    fill(left, evenLeft);
    std::fill(row + evenLeft, row + evenRight, ink.pixel(shape.coverage(rect.midX(), middle)));
    fill(evenRight, right);
  }
  cairo_surface_mark_dirty(pixels);
}

}  // namespace vellora
