#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <ostream>
#include <vector>

#include <cairo.h>

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

// A copy of an ARGB32 image surface's pixels. Channels from 0 to 1, colours premultiplied.
class Picture {
 public:
  explicit Picture(cairo_surface_t* surface)
      : width_(cairo_image_surface_get_width(surface)),
        height_(cairo_image_surface_get_height(surface)) {
    cairo_surface_flush(surface);
    const unsigned char* data = cairo_image_surface_get_data(surface);
    pixels_.resize(static_cast<std::size_t>(width_ * height_));
    for (std::int64_t y = 0; y < height_; ++y) {
      std::memcpy(pixels_.data() + y * width_, data + y * cairo_image_surface_get_stride(surface),
                  static_cast<std::size_t>(width_) * 4);
    }
  }

  std::int64_t width() const { return width_; }
  std::int64_t height() const { return height_; }
  double alpha(std::int64_t x, std::int64_t y) const { return channel(x, y, 24); }
  double red(std::int64_t x, std::int64_t y) const { return channel(x, y, 16); }
  double green(std::int64_t x, std::int64_t y) const { return channel(x, y, 8); }
  double blue(std::int64_t x, std::int64_t y) const { return channel(x, y, 0); }

  double largestAlpha() const {
    double largest = 0;
    for (std::int64_t y = 0; y < height_; ++y) {
      for (std::int64_t x = 0; x < width_; ++x) largest = std::max(largest, alpha(x, y));
    }
    return largest;
  }

  // The smallest box around all pixels that are not transparent, of the whole or of a part.
  Box bounds() const { return bounds({0, 0, width_ - 1, height_ - 1}); }
  Box bounds(const Box& part) const {
    Box box{width_, height_, -1, -1};
    for (std::int64_t y = part.top; y <= part.bottom; ++y) {
      for (std::int64_t x = part.left; x <= part.right; ++x) {
        if (alpha(x, y) == 0) continue;
        box = {std::min(box.left, x), std::min(box.top, y), std::max(box.right, x),
               std::max(box.bottom, y)};
      }
    }
    return box;
  }

  bool operator==(const Picture&) const = default;

 private:
  double channel(std::int64_t x, std::int64_t y, int shift) const {
    return ((pixels_.at(static_cast<std::size_t>(y * width_ + x)) >> shift) & 0xFF) / 255.0;
  }

  std::int64_t width_;
  std::int64_t height_;
  std::vector<std::uint32_t> pixels_;
};

inline std::ostream& operator<<(std::ostream& out, const Picture& picture) {
  return out << picture.width() << " × " << picture.height() << " pixels, something at "
             << picture.bounds();
}

}  // namespace vellora
