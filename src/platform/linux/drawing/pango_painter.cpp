#include "platform/linux/drawing/pango_painter.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <new>
#include <numbers>
#include <utility>

#include <pango/pangocairo.h>

#include "platform/linux/drawing/cairo_surface.h"
#include "platform/linux/drawing/gaussian_blur.h"
#include "platform/linux/drawing/text_language.h"

namespace vellora {

namespace {

// The system font and what stands in for it; fontconfig finds a font for every other script.
constexpr const char* fontFamilies = "Inter,Noto Sans,sans-serif";

// From one baseline to the next, in font sizes, whatever fonts the line is set in: two lines of any
// script fit into the height that a caption's text gets.
constexpr double lineHeight = 1.25;

// Fonts and rectangles beyond this many points are treated as this large; Pango counts in
// 1/1024 point in 32 bits.
constexpr double largestLength = 100'000;

constexpr std::size_t heightLimit = 256;  // of `heights_`, then all go

int pangoUnits(double points) {
  return static_cast<int>(std::lround(std::min(points, largestLength) * PANGO_SCALE));
}

bool isPositive(double length) { return length > 0 && std::isfinite(length); }

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

// Text that Pango accepts: UTF-8 without NUL.
void setText(PangoLayout* layout, std::string_view text) {
  const auto length = static_cast<gssize>(text.size());
  if (g_utf8_validate(text.data(), length, nullptr)) {
    pango_layout_set_text(layout, text.data(), static_cast<int>(length));
    return;
  }
  const std::unique_ptr<char, decltype(&g_free)> valid(g_utf8_make_valid(text.data(), length),
                                                       g_free);
  pango_layout_set_text(layout, valid.get(), -1);
}

std::string heightKey(std::string_view text, double fontSize, double width) {
  const double numbers[] = {fontSize, width};
  std::string key(sizeof numbers, '\0');
  std::memcpy(key.data(), numbers, sizeof numbers);
  return key.append(text);
}

}  // namespace

PangoPainter::PangoPainter()
    : fontMap_(pango_cairo_font_map_new()),
      context_(pango_font_map_create_context(fontMap_.get())),
      font_(pango_font_description_new()) {
  // Text has the same measures at every scale: no hinting, no rounding to pixels.
  const CairoFontOptionsPtr options(cairo_font_options_create());
  cairo_font_options_set_antialias(options.get(), CAIRO_ANTIALIAS_GRAY);
  cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_NONE);
  cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
  pango_cairo_context_set_font_options(context_.get(), options.get());
  pango_context_set_round_glyph_positions(context_.get(), FALSE);

  pango_font_description_set_family_static(font_.get(), fontFamilies);
  pango_font_description_set_weight(font_.get(), PANGO_WEIGHT_MEDIUM);

  layout_.reset(pango_layout_new(context_.get()));
  pango_layout_set_wrap(layout_.get(), PANGO_WRAP_WORD_CHAR);
}

// Sets up `layout_` but for its height. All lengths are positive.
void PangoPainter::layOut(std::string_view text, double fontSize, double width) {
  pango_font_description_set_absolute_size(font_.get(), pangoUnits(fontSize));
  pango_layout_set_font_description(layout_.get(), font_.get());
  const PangoAttributesPtr attributes(pango_attr_list_new());
  pango_attr_list_insert(attributes.get(),
                         pango_attr_line_height_new_absolute(pangoUnits(fontSize * lineHeight)));
  pango_layout_set_attributes(layout_.get(), attributes.get());
  pango_context_set_language(context_.get(), pango_language_from_string(languageTag(text)));
  pango_layout_set_width(layout_.get(), pangoUnits(width));
  setText(layout_.get(), text);
}

double PangoPainter::measureHeight(std::string_view text, double fontSize, double width,
                                   double maximumHeight) {
  if (!isPositive(fontSize) || !isPositive(width)) return 0;
  std::string key = heightKey(text, fontSize, width);
  auto found = heights_.find(key);
  if (found == heights_.end()) {
    pango_context_set_matrix(context_.get(), nullptr);
    layOut(text, fontSize, width);
    pango_layout_set_ellipsize(layout_.get(), PANGO_ELLIPSIZE_NONE);
    pango_layout_set_height(layout_.get(), -1);
    PangoRectangle logical;
    pango_layout_get_extents(layout_.get(), nullptr, &logical);
    if (heights_.size() >= heightLimit) heights_.clear();
    const double height = static_cast<double>(logical.height) / PANGO_SCALE;
    found = heights_.emplace(std::move(key), height).first;
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
  const Rect& place = drawing.textRect;
  if (!isPositive(drawing.fontSize) || !isPositive(place.width) || !isPositive(place.height)) {
    return;
  }
  pango_cairo_update_context(context, context_.get());
  layOut(drawing.text, drawing.fontSize, place.width);
  pango_layout_set_ellipsize(layout_.get(), PANGO_ELLIPSIZE_END);
  pango_layout_set_height(layout_.get(), pangoUnits(place.height));

  // Faded as a whole, because glyphs with colours of their own ignore the colour's alpha.
  const bool faded = drawing.textColor.alpha < 1;
  if (faded) cairo_push_group(context);
  setColor(context, drawing.textColor, 1);
  cairo_move_to(context, place.x, place.y);
  pango_cairo_show_layout(context, layout_.get());
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
