#include "platform/linux/drawing/pango_painter.h"

#include <cmath>
#include <cstring>
#include <new>
#include <utility>

#include "platform/linux/drawing/cairo_surface.h"
#include "platform/linux/drawing/gaussian_blur.h"
#include "platform/linux/drawing/plate.h"
#include "platform/linux/drawing/text_language.h"

namespace vellora {

namespace {

constexpr std::size_t heightLimit = 256;  // of `heights_`, then all go

// Longer texts are measured each time: keeping them would take more room than it saves time.
constexpr std::size_t longestKept = 4096;  // bytes

std::string heightKey(std::string_view text, double fontSize, double width, double most) {
  const double numbers[] = {fontSize, width, most};
  std::string key(sizeof numbers, '\0');
  std::memcpy(key.data(), numbers, sizeof numbers);
  return key.append(text);
}

}  // namespace

bool PangoPainter::setTranslation(const std::vector<std::string_view>& texts) {
  if (!textSetter_.setCommonLanguage(commonLanguage(texts))) return false;
  heights_.clear();
  return true;
}

double PangoPainter::measureHeight(std::string_view text, double fontSize, double width,
                                   double maximumHeight) {
  if (text.size() > longestKept) {
    return textSetter_.height(text, fontSize, width, maximumHeight);
  }
  std::string key = heightKey(text, fontSize, width, maximumHeight);
  auto found = heights_.find(key);
  if (found == heights_.end()) {
    if (heights_.size() >= heightLimit) heights_.clear();
    const double height = textSetter_.height(text, fontSize, width, maximumHeight);
    found = heights_.emplace(std::move(key), height).first;
  }
  return found->second;
}

std::shared_ptr<const CaptionImage> PangoPainter::paint(const CaptionDrawing& drawing) {
  CairoSurfacePtr pixels = makePixels(drawing.pixelWidth, drawing.pixelHeight);
  if (!pixels) return nullptr;
  const double scale = drawing.scale;
  const Rect& plate = drawing.plate;
  fillPlate(pixels.get(),
            {plate.x * scale, plate.y * scale, plate.width * scale, plate.height * scale},
            drawing.cornerRadius * scale, drawing.plateColor);
  {
    const CairoContextPtr context(cairo_create(pixels.get()));
    cairo_scale(context.get(), scale, scale);
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
  cairo_set_source_rgb(context, drawing.textColor.red, drawing.textColor.green,
                       drawing.textColor.blue);
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
