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
  std::vector<std::uint32_t> row(static_cast<std::size_t>(width));
  std::vector<Color> pixels;
  for (std::int64_t y = 0; y < height; ++y) {
    std::memcpy(row.data(),
                cairo_image_surface_get_data(surface) + y * cairo_image_surface_get_stride(surface),
                row.size() * sizeof row[0]);
    for (const std::uint32_t pixel : row) {
      const auto channel = [&](int shift) { return ((pixel >> shift) & 0xFF) / 255.0; };
      pixels.push_back({channel(16), channel(8), channel(0), channel(24)});
    }
  }
  return {width, height, std::move(pixels)};
}

}  // namespace vellora
