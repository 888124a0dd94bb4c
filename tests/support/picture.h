#pragma once

#include <algorithm>
#include <cstdint>
#include <ostream>
#include <utility>
#include <vector>

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

// Pixels to look at, row 0 at the top: 0xAARRGGBB with premultiplied colours, whose channels are
// told from 0 to 1.
class Picture {
 public:
  Picture(std::int64_t width, std::int64_t height, std::vector<std::uint32_t> pixels)
      : width_(width), height_(height), pixels_(std::move(pixels)) {}

  std::int64_t width() const { return width_; }
  std::int64_t height() const { return height_; }
  double alpha(std::int64_t x, std::int64_t y) const { return channel(x, y, 24); }
  double red(std::int64_t x, std::int64_t y) const { return channel(x, y, 16); }
  double green(std::int64_t x, std::int64_t y) const { return channel(x, y, 8); }
  double blue(std::int64_t x, std::int64_t y) const { return channel(x, y, 0); }

  double largestAlpha() const {
    double largest = 0;
    for (const std::uint32_t pixel : pixels_) largest = std::max(largest, (pixel >> 24) / 255.0);
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
  double channel(std::int64_t x, std::int64_t y, int shift) const {
    return ((pixels_.at(static_cast<std::size_t>(y * width_ + x)) >> shift) & 0xFF) / 255.0;
  }

  std::int64_t width_;
  std::int64_t height_;
  std::vector<std::uint32_t> pixels_;
};

}  // namespace vellora
