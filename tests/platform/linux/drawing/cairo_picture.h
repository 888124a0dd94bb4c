#pragma once

#include <cstdint>
#include <cstring>
#include <utility>
#include <vector>

#include <cairo.h>

#include "support/picture.h"

namespace vellora {

// A copy of an ARGB32 image surface's pixels.
inline Picture pictureOf(cairo_surface_t* surface) {
  cairo_surface_flush(surface);
  const std::int64_t width = cairo_image_surface_get_width(surface);
  const std::int64_t height = cairo_image_surface_get_height(surface);
  std::vector<std::uint32_t> pixels(static_cast<std::size_t>(width * height));
  for (std::int64_t y = 0; y < height; ++y) {
    std::memcpy(pixels.data() + y * width,
                cairo_image_surface_get_data(surface) + y * cairo_image_surface_get_stride(surface),
                static_cast<std::size_t>(width) * sizeof pixels[0]);
  }
  return {width, height, std::move(pixels)};
}

}  // namespace vellora
