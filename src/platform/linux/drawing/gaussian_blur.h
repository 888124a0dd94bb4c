#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/linux/drawing/blur_loops.h"

namespace vellora {

// Standard deviations, in pixels: below the smallest a Gaussian changes nothing in an 8-bit image,
// above the largest it is refused.
inline constexpr double smallestBlur = 0.16;
inline constexpr double largestBlur = 64;

// An image in memory of four 8-bit channels a pixel, rows from the top.
template <typename Byte>
struct PixelRows {
  Byte* data = nullptr;
  std::size_t width = 0;   // pixels
  std::size_t height = 0;  // pixels
  std::size_t stride = 0;  // bytes from one row to the next
};

// Writes `source`, convolved with a Gaussian of standard deviation `sigma` pixels and transparent
// outside, to `destination`, which has the same size and other memory; below `smallestBlur`, a
// copy. All four channels are treated alike, so premultiplied pixels stay premultiplied. Within one
// unit of 255 of the exact convolution, and the same with all loops. `sigma` is at most
// `largestBlur`. Throws std::bad_alloc. Any thread.
void gaussianBlur(const PixelRows<const std::uint8_t>& source,
                  const PixelRows<std::uint8_t>& destination, double sigma,
                  const BlurLoops& loops = fastestBlurLoops());

}  // namespace vellora
