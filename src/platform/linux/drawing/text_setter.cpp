#include "platform/linux/drawing/text_setter.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include <pango/pangocairo.h>

#include "platform/linux/drawing/text_language.h"

namespace vellora {

namespace {

// The system font and what stands in for it; fontconfig finds a font for every other script.
constexpr const char* fontFamilies = "Inter,Noto Sans,sans-serif";

// Lengths beyond this many points are treated as this large: Pango counts in 1/1024 point in 32
// bits.
constexpr double largestLength = 100'000;

int pangoUnits(double points) {
  return static_cast<int>(std::lround(std::min(points, largestLength) * PANGO_SCALE));
}

double points(int pangoUnits) { return static_cast<double>(pangoUnits) / PANGO_SCALE; }

bool isPositive(double length) { return length > 0 && std::isfinite(length); }

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

// The text with a space for each character that ends a line or a paragraph in Pango.
std::string onOneLine(std::string_view text) {
  std::string result(text);
  for (const std::string_view end : {"\r", "\n", "\u2028", "\u2029"}) {
    for (std::size_t at = 0; (at = result.find(end, at)) != std::string::npos; ++at) {
      result.replace(at, end.size(), " ");
    }
  }
  return result;
}

}  // namespace

TextSetter::TextSetter()
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
  lastLine_.reset(pango_layout_new(context_.get()));
  pango_layout_set_ellipsize(lastLine_.get(), PANGO_ELLIPSIZE_END);

  // The system font stands in the middle of its line.
  constexpr double size = 100;
  pango_font_description_set_absolute_size(font_.get(), size * PANGO_SCALE);
  const PangoMetricsPtr metrics(
      pango_context_get_metrics(context_.get(), font_.get(), pango_language_from_string("en")));
  const double ascent = points(pango_font_metrics_get_ascent(metrics.get())) / size;
  const double descent = points(pango_font_metrics_get_descent(metrics.get())) / size;
  baseline_ = (lineHeight - ascent - descent) / 2 + ascent;
}

void TextSetter::layOut(PangoLayout* layout, std::string_view text, double fontSize, double width) {
  pango_font_description_set_absolute_size(font_.get(), pangoUnits(fontSize));
  pango_layout_set_font_description(layout, font_.get());
  pango_context_set_language(context_.get(), pango_language_from_string(languageTag(text)));
  pango_layout_set_width(layout, pangoUnits(width));
  setText(layout, text);
}

double TextSetter::height(std::string_view text, double fontSize, double width) {
  if (!isPositive(fontSize) || !isPositive(width)) return 0;
  pango_context_set_matrix(context_.get(), nullptr);
  layOut(layout_.get(), text, fontSize, width);
  return pango_layout_get_line_count(layout_.get()) * fontSize * lineHeight;
}

void TextSetter::show(cairo_t* context, std::string_view text, double fontSize, const Rect& place) {
  if (!isPositive(fontSize) || !isPositive(place.width) || !isPositive(place.height)) return;
  pango_cairo_update_context(context, context_.get());
  layOut(layout_.get(), text, fontSize, place.width);

  const double pitch = fontSize * lineHeight;
  // A thousandth of a line lost to rounding costs no line.
  const double room = std::fmax(std::floor(place.height / pitch + 0.001), 1);
  const int count = pango_layout_get_line_count(layout_.get());
  const bool cut = count > room;
  const int whole = cut ? static_cast<int>(room) - 1 : count;

  for (int i = 0; i < whole; ++i) {
    showLine(context, pango_layout_get_line_readonly(layout_.get(), i), fontSize, place.width,
             {place.x, place.y + i * pitch});
  }
  if (cut) {
    showRest(context, pango_layout_get_line_readonly(layout_.get(), whole), fontSize, place.width,
             {place.x, place.y + whole * pitch});
  }
}

void TextSetter::showLine(cairo_t* context, PangoLayoutLine* line, double fontSize, double width,
                          Point lineTop) {
  double indent = 0;
  if (pango_layout_line_get_resolved_direction(line) == PANGO_DIRECTION_RTL) {
    PangoRectangle logical;
    pango_layout_line_get_extents(line, nullptr, &logical);
    indent = width - points(logical.width);
  }
  cairo_move_to(context, lineTop.x + indent, lineTop.y + baseline_ * fontSize);
  pango_cairo_show_layout_line(context, line);
}

// Shows all that follows from `line` of `layout_` on, as one line with an ellipsis.
void TextSetter::showRest(cairo_t* context, PangoLayoutLine* line, double fontSize, double width,
                          Point lineTop) {
  const std::string rest =
      onOneLine(pango_layout_get_text(layout_.get()) + pango_layout_line_get_start_index(line));
  // Its direction is its paragraph's, even where its own first letter is of the other one.
  pango_context_set_base_dir(context_.get(), pango_layout_line_get_resolved_direction(line));
  pango_layout_set_auto_dir(lastLine_.get(), FALSE);
  layOut(lastLine_.get(), rest, fontSize, width);
  showLine(context, pango_layout_get_line_readonly(lastLine_.get(), 0), fontSize, width, lineTop);
  pango_context_set_base_dir(context_.get(), PANGO_DIRECTION_WEAK_LTR);
}

}  // namespace vellora
