#include "platform/linux/drawing/cairo_surface.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

namespace vellora {

namespace {

// The largest side of an image surface, in pixels.
constexpr std::int64_t largestSide = 32767;

// Cairo's coordinates end soon after this many pixels; nothing is seen out there.
constexpr double farthest = 1'000'000;

bool isDrawable(const Rect& place) {
  const bool near = std::abs(place.x) < farthest && std::abs(place.y) < farthest &&
                    place.width < farthest && place.height < farthest;
  return near && !place.isEmpty();
}

// The context's unit is the pixel.
void drawStretched(cairo_t* context, cairo_surface_t* pixels, const Rect& place,
                   const Size& pixelSize) {
  cairo_save(context);
  cairo_translate(context, place.x, place.y);
  cairo_scale(context, place.width / pixelSize.width, place.height / pixelSize.height);
  cairo_set_source_surface(context, pixels, 0, 0);
  cairo_pattern_set_filter(cairo_get_source(context), CAIRO_FILTER_GOOD);
  cairo_paint(context);
  cairo_restore(context);
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

CairoSurface::CairoSurface(cairo_surface_t* target, double scale, Target state)
    : context_(cairo_create(target)), scale_(scale), state_(state) {}

bool CairoSurface::isClearAt(const Rect& place) const {
  return state_ == Target::isClear &&
         std::none_of(drawn_.begin(), drawn_.end(),
                      [&](const Rect& other) { return other.intersects(place); });
}

// `place` begins at a whole pixel and is as large as the picture.
void CairoSurface::drawUnscaled(cairo_surface_t* pixels, const Rect& place) {
  cairo_t* context = context_.get();
  cairo_set_source_surface(context, pixels, place.x, place.y);
  cairo_pattern_set_filter(cairo_get_source(context), CAIRO_FILTER_NEAREST);
  cairo_set_operator(context, isClearAt(place) ? CAIRO_OPERATOR_SOURCE : CAIRO_OPERATOR_OVER);
  cairo_rectangle(context, place.x, place.y, place.width, place.height);
  cairo_fill(context);
  cairo_set_operator(context, CAIRO_OPERATOR_OVER);
}

void CairoSurface::drawImage(const CaptionImage& image, const Rect& destination) {
  const auto& picture = static_cast<const CairoImage&>(image);
  Rect place = destination.standardized();
  place = {place.x * scale_, place.y * scale_, place.width * scale_, place.height * scale_};
  if (!isDrawable(place)) return;
  cairo_surface_t* pixels = picture.pixels();
  const Size pixelSize{static_cast<double>(cairo_image_surface_get_width(pixels)),
                       static_cast<double>(cairo_image_surface_get_height(pixels))};
  // A picture's size is cut to whole pixels, so it may fall short by less than one.
  const bool unscaled =
      std::abs(place.width - pixelSize.width) < 1 && std::abs(place.height - pixelSize.height) < 1;
  Size growth{1, 1};
  if (unscaled) {
    place = {std::round(place.x), std::round(place.y), pixelSize.width, pixelSize.height};
    drawUnscaled(pixels, place);
  } else {
    growth = {place.width / scale_ / picture.size().width,
              place.height / scale_ / picture.size().height};
    drawStretched(context_.get(), pixels, place, pixelSize);
  }
  drawn_.push_back(place);
  const Rect plate = picture.plate();
  plates_.push_back({place.x / scale_ + plate.x * growth.width,
                     place.y / scale_ + plate.y * growth.height, plate.width * growth.width,
                     plate.height * growth.height});
}

std::unique_ptr<CairoBitmap> CairoBitmap::make(std::int64_t pixelWidth, std::int64_t pixelHeight) {
  CairoSurfacePtr pixels = makePixels(pixelWidth, pixelHeight);
  if (!pixels) return nullptr;
  return std::unique_ptr<CairoBitmap>(new CairoBitmap(std::move(pixels)));
}

CairoSurface CairoBitmap::surface(double scale) {
  return {pixels_.get(), scale, std::exchange(state_, CairoSurface::Target::hasContent)};
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
