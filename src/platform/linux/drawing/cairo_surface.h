#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "platform/caption_painter.h"
#include "platform/linux/drawing/handles.h"

namespace vellora {

// A caption's picture: premultiplied ARGB32 pixels (Cairo's format, native byte order), and where
// the plate lies in it, in points from its top left.
class CairoImage final : public CaptionImage {
 public:
  CairoImage(CairoSurfacePtr pixels, const Size& size, const Rect& plate)
      : pixels_(std::move(pixels)), size_(size), plate_(plate) {}

  // An image surface; nobody writes to it.
  cairo_surface_t* pixels() const { return pixels_.get(); }
  Size size() const { return size_; }
  Rect plate() const { return plate_; }

 private:
  CairoSurfacePtr pixels_;
  Size size_;
  Rect plate_;
};

// Draws a picture of `size` into `place`, both in pixels, which are the context's unit. A place of
// the picture's own size is moved to whole pixels, so that text stays as sharp as it was painted;
// it may be larger by less than a pixel, for a picture's size is cut to whole ones. Any other place
// stretches the picture. Main thread.
void drawPicture(cairo_t* context, cairo_surface_t* picture, const Size& size, const Rect& place);

// Draws captions over what is on any Cairo surface of `scale` pixels to a point, whose pixel (0, 0)
// is the origin. Keeps a reference to it. Main thread.
class CairoSurface final : public Surface {
 public:
  CairoSurface(cairo_surface_t* target, double scale);

  // `image` must be a CairoImage. Where it goes is drawPicture's to say.
  void drawImage(const CaptionImage& image, const Rect& destination) override;

 private:
  CairoContextPtr context_;
  double scale_;
};

// Pixels in memory that captions can be drawn on, clear at first.
class CairoBitmap final : public Bitmap {
 public:
  // Null for a size that is not positive or too large for memory or for Cairo (32767 a side).
  static std::unique_ptr<CairoBitmap> make(std::int64_t pixelWidth, std::int64_t pixelHeight);

  // An ARGB32 image surface.
  cairo_surface_t* pixels() const { return pixels_.get(); }

  std::int64_t pixelWidth() const override;
  std::int64_t pixelHeight() const override;
  std::optional<double> alpha(std::int64_t column, std::int64_t row) const override;
  std::optional<std::vector<std::uint8_t>> png() const override;

 private:
  explicit CairoBitmap(CairoSurfacePtr pixels) : pixels_(std::move(pixels)) {}

  CairoSurfacePtr pixels_;
};

// A clear ARGB32 image surface; null when there is none to be had of that size.
CairoSurfacePtr makePixels(std::int64_t width, std::int64_t height);

}  // namespace vellora
