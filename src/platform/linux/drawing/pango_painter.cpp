#include "platform/linux/drawing/pango_painter.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <new>
#include <numbers>
#include <utility>

#include "platform/linux/drawing/cairo_surface.h"
#include "platform/linux/drawing/gaussian_blur.h"

namespace vellora {

namespace {

constexpr std::size_t heightLimit = 256;  // of `heights_`, then all go

void setColor(cairo_t* context, const Color& color, double alpha) {
  cairo_set_source_rgba(context, color.red, color.green, color.blue, alpha);
}

// A rectangle with quarter circles for corners, as the current path.
void addRoundedRectangle(cairo_t* context, const Rect& rect, double cornerRadius) {
  const double radius = std::min({cornerRadius, rect.width / 2, rect.height / 2});
  const double right = rect.x + rect.width;
  const double bottom = rect.y + rect.height;
  constexpr double quarter = std::numbers::pi / 2;
  cairo_new_sub_path(context);
  cairo_arc(context, right - radius, rect.y + radius, radius, -quarter, 0);
  cairo_arc(context, right - radius, bottom - radius, radius, 0, quarter);
  cairo_arc(context, rect.x + radius, bottom - radius, radius, quarter, 2 * quarter);
  cairo_arc(context, rect.x + radius, rect.y + radius, radius, 2 * quarter, 3 * quarter);
  cairo_close_path(context);
}

std::string heightKey(std::string_view text, double fontSize, double width) {
  const double numbers[] = {fontSize, width};
  std::string key(sizeof numbers, '\0');
  std::memcpy(key.data(), numbers, sizeof numbers);
  return key.append(text);
}

}  // namespace

double PangoPainter::measureHeight(std::string_view text, double fontSize, double width,
                                   double maximumHeight) {
  std::string key = heightKey(text, fontSize, width);
  auto found = heights_.find(key);
  if (found == heights_.end()) {
    if (heights_.size() >= heightLimit) heights_.clear();
    found = heights_.emplace(std::move(key), textSetter_.height(text, fontSize, width)).first;
  }
  return std::fmin(found->second, maximumHeight);
}

std::shared_ptr<const CaptionImage> PangoPainter::paint(const CaptionDrawing& drawing) {
  CairoSurfacePtr pixels = makePixels(drawing.pixelWidth, drawing.pixelHeight);
  if (!pixels) return nullptr;
  {
    const CairoContextPtr context(cairo_create(pixels.get()));
    cairo_scale(context.get(), drawing.scale, drawing.scale);
    addRoundedRectangle(context.get(), drawing.plate, drawing.cornerRadius);
    setColor(context.get(), drawing.plateColor, drawing.plateColor.alpha);
    cairo_fill(context.get());
    showText(context.get(), drawing);
    if (cairo_status(context.get()) != CAIRO_STATUS_SUCCESS) return nullptr;
  }
  cairo_surface_flush(pixels.get());
  return std::make_shared<CairoImage>(std::move(pixels), drawing.size, drawing.plate);
}

void PangoPainter::showText(cairo_t* context, const CaptionDrawing& drawing) {
  // Faded as a whole, because glyphs with colours of their own ignore the colour's alpha.
  const bool faded = drawing.textColor.alpha < 1;
  if (faded) cairo_push_group(context);
  setColor(context, drawing.textColor, 1);
  textSetter_.show(context, drawing.text, drawing.fontSize, drawing.textRect);
  if (faded) {
    cairo_pop_group_to_source(context);
    cairo_paint_with_alpha(context, drawing.textColor.alpha);
  }
}

std::shared_ptr<const CaptionImage> PangoPainter::blur(const CaptionImage& image, double radius) {
  const auto& sharp = static_cast<const CairoImage&>(image);
  const std::int64_t width = cairo_image_surface_get_width(sharp.pixels());
  const std::int64_t height = cairo_image_surface_get_height(sharp.pixels());
  CairoSurfacePtr pixels = makePixels(width, height);
  if (!pixels || !(radius <= largestBlur)) return nullptr;

  const PixelRows<const std::uint8_t> source{
      cairo_image_surface_get_data(sharp.pixels()), static_cast<std::size_t>(width),
      static_cast<std::size_t>(height),
      static_cast<std::size_t>(cairo_image_surface_get_stride(sharp.pixels()))};
  const PixelRows<std::uint8_t> destination{
      cairo_image_surface_get_data(pixels.get()), source.width, source.height,
      static_cast<std::size_t>(cairo_image_surface_get_stride(pixels.get()))};
  try {
    gaussianBlur(source, destination, radius);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
  cairo_surface_mark_dirty(pixels.get());
  return std::make_shared<CairoImage>(std::move(pixels), sharp.size(), sharp.plate());
}

}  // namespace vellora
