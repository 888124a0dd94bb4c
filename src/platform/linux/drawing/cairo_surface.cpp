#include "platform/linux/drawing/cairo_surface.h"

#include <cmath>
#include <cstring>
#include <utility>

namespace vellora {

namespace {

// The largest side of an image surface, in pixels.
constexpr std::int64_t largestSide = 32767;

// Cairo's coordinates end soon after this many pixels; nothing is seen out there.
constexpr double farthest = 1'000'000;

// Cairo's unit in pixels. A picture shrunk to less shows nothing, and shrunk without end it has a
// matrix that cannot be inverted, which ends the process.
constexpr double smallest = 1.0 / 256;

bool isDrawable(const Rect& place) {
  return std::abs(place.x) < farthest && std::abs(place.y) < farthest && place.width < farthest &&
         place.height < farthest && place.width >= smallest && place.height >= smallest;
}

cairo_status_t append(void* closure, const unsigned char* data, unsigned int length) {
  auto& bytes = *static_cast<std::vector<std::uint8_t>*>(closure);
  bytes.insert(bytes.end(), data, data + length);
  return CAIRO_STATUS_SUCCESS;
}

}  // namespace

CairoSurfacePtr makePixels(std::int64_t width, std::int64_t height) {
  if (width < 1 || height < 1 || width > largestSide || height > largestSide) return nullptr;
  CairoSurfacePtr pixels(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, static_cast<int>(width),
                                                    static_cast<int>(height)));
  if (cairo_surface_status(pixels.get()) != CAIRO_STATUS_SUCCESS) return nullptr;
  return pixels;
}

void drawPicture(cairo_t* context, cairo_surface_t* picture, const Size& size, const Rect& place) {
  if (!isDrawable(place)) return;
  cairo_save(context);
  if (std::abs(place.width - size.width) < 1 && std::abs(place.height - size.height) < 1) {
    cairo_translate(context, std::round(place.x), std::round(place.y));
  } else {
    cairo_translate(context, place.x, place.y);
    cairo_scale(context, place.width / size.width, place.height / size.height);
  }
  cairo_set_source_surface(context, picture, 0, 0);
  cairo_paint(context);
  cairo_restore(context);
}

CairoSurface::CairoSurface(cairo_surface_t* target, double scale)
    : context_(cairo_create(target)), scale_(scale) {}

void CairoSurface::drawImage(const CaptionImage& image, const Rect& destination) {
  Rect place = destination.standardized();
  place = {place.x * scale_, place.y * scale_, place.width * scale_, place.height * scale_};
  cairo_surface_t* pixels = static_cast<const CairoImage&>(image).pixels();
  drawPicture(context_.get(), pixels,
              {static_cast<double>(cairo_image_surface_get_width(pixels)),
               static_cast<double>(cairo_image_surface_get_height(pixels))},
              place);
}

std::unique_ptr<CairoBitmap> CairoBitmap::make(std::int64_t pixelWidth, std::int64_t pixelHeight) {
  CairoSurfacePtr pixels = makePixels(pixelWidth, pixelHeight);
  if (!pixels) return nullptr;
  return std::unique_ptr<CairoBitmap>(new CairoBitmap(std::move(pixels)));
}

std::int64_t CairoBitmap::pixelWidth() const {
  return cairo_image_surface_get_width(pixels_.get());
}

std::int64_t CairoBitmap::pixelHeight() const {
  return cairo_image_surface_get_height(pixels_.get());
}

std::optional<double> CairoBitmap::alpha(std::int64_t column, std::int64_t row) const {
  if (column < 0 || row < 0 || column >= pixelWidth() || row >= pixelHeight()) return std::nullopt;
  cairo_surface_flush(pixels_.get());
  const unsigned char* pixel = cairo_image_surface_get_data(pixels_.get()) +
                               row * cairo_image_surface_get_stride(pixels_.get()) + column * 4;
  std::uint32_t argb = 0;
  std::memcpy(&argb, pixel, sizeof argb);
  return static_cast<double>(argb >> 24) / 255;
}

std::optional<std::vector<std::uint8_t>> CairoBitmap::png() const {
  std::vector<std::uint8_t> bytes;
  if (cairo_surface_write_to_png_stream(pixels_.get(), append, &bytes) != CAIRO_STATUS_SUCCESS) {
    return std::nullopt;
  }
  return bytes;
}

}  // namespace vellora
