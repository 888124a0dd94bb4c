#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>

#import <AppKit/AppKit.h>

#import "platform/macos/drawing.h"

namespace vellora {

// The first and the last column and row of something; both −1 where there is nothing.
struct Box {
  std::int64_t left = -1;
  std::int64_t top = -1;
  std::int64_t right = -1;
  std::int64_t bottom = -1;
  bool operator==(const Box&) const = default;
};

// The pixels of a painted caption, row 0 at the top.
class Picture {
 public:
  explicit Picture(const std::shared_ptr<const CaptionImage>& image)
      : bitmap_([[NSBitmapImageRep alloc]
            initWithCGImage:static_cast<const AppKitImage&>(*image).pixels()]) {}

  std::int64_t width() const { return bitmap_.pixelWidth(); }
  std::int64_t height() const { return bitmap_.pixelHeight(); }
  double alpha(std::int64_t column, std::int64_t row) const {
    return bitmap_.alpha(column, row).value_or(-1);
  }
  // Red, green and blue from 0 to 1, not multiplied with alpha.
  Color color(std::int64_t column, std::int64_t row) const {
    NSColor* const color = [bitmap_.representation() colorAtX:column y:row];
    return {color.redComponent, color.greenComponent, color.blueComponent, color.alphaComponent};
  }
  // Where alpha is more than `threshold`.
  Box bounds(double threshold = 0) const {
    Box box;
    for (std::int64_t row = 0; row < height(); ++row) {
      for (std::int64_t column = 0; column < width(); ++column) {
        if (alpha(column, row) <= threshold) continue;
        if (box.left < 0 || column < box.left) box.left = column;
        if (box.top < 0) box.top = row;
        box.right = std::max(box.right, column);
        box.bottom = row;
      }
    }
    return box;
  }

 private:
  const AppKitBitmap bitmap_;
};

}  // namespace vellora
