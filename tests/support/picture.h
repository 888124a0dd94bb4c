#pragma once

#include <algorithm>
#include <cstdint>
#include <ostream>
#include <utility>
#include <vector>

#include "platform/caption_painter.h"

namespace vellora {

// Pixels from `left` to `right` and from `top` to `bottom`, all four included.
struct Box {
  std::int64_t left = 0;
  std::int64_t top = 0;
  std::int64_t right = -1;
  std::int64_t bottom = -1;

  std::int64_t width() const { return right - left + 1; }
  std::int64_t height() const { return bottom - top + 1; }
  bool operator==(const Box&) const = default;
  friend std::ostream& operator<<(std::ostream& out, const Box& box) {
    return out << "(" << box.left << ", " << box.top << ") to (" << box.right << ", " << box.bottom
               << ")";
  }
};

// Pixels to look at, row 0 at the top. Channels from 0 to 1, colours premultiplied.
class Picture {
 public:
  Picture(std::int64_t width, std::int64_t height, std::vector<Color> pixels)
      : width_(width), height_(height), pixels_(std::move(pixels)) {}

  std::int64_t width() const { return width_; }
  std::int64_t height() const { return height_; }
  double alpha(std::int64_t x, std::int64_t y) const { return at(x, y).alpha; }
  double red(std::int64_t x, std::int64_t y) const { return at(x, y).red; }
  double green(std::int64_t x, std::int64_t y) const { return at(x, y).green; }
  double blue(std::int64_t x, std::int64_t y) const { return at(x, y).blue; }

  double largestAlpha() const {
    double largest = 0;
    for (const Color& pixel : pixels_) largest = std::max(largest, pixel.alpha);
    return largest;
  }

  // The smallest box around all pixels of more than that alpha, of the whole or of a part.
  Box bounds(double threshold = 0) const {
    return bounds({0, 0, width_ - 1, height_ - 1}, threshold);
  }
  Box bounds(const Box& part, double threshold = 0) const {
    Box box{width_, height_, -1, -1};
    for (std::int64_t y = part.top; y <= part.bottom; ++y) {
      for (std::int64_t x = part.left; x <= part.right; ++x) {
        if (alpha(x, y) <= threshold) continue;
        box = {std::min(box.left, x), std::min(box.top, y), std::max(box.right, x),
               std::max(box.bottom, y)};
      }
    }
    return box;
  }

  bool operator==(const Picture&) const = default;
  friend std::ostream& operator<<(std::ostream& out, const Picture& picture) {
    return out << picture.width() << " × " << picture.height() << " pixels, something at "
               << picture.bounds();
  }

 private:
  const Color& at(std::int64_t x, std::int64_t y) const {
    return pixels_.at(static_cast<std::size_t>(y * width_ + x));
  }

  std::int64_t width_;
  std::int64_t height_;
  std::vector<Color> pixels_;
};

}  // namespace vellora
