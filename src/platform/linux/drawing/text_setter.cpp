#include "platform/linux/drawing/text_setter.h"

#include <algorithm>
#include <cmath>
#include <string>
#include <utility>

#include <pango/pangocairo.h>

#include "platform/linux/drawing/shown_text.h"
#include "platform/linux/drawing/text_language.h"

namespace vellora {

namespace {

// The system font and what stands in for it. Left to itself, fontconfig may take another family of
// these scripts for sans-serif, one in a single weight or with serifs, and where it knows no
// language's letter forms it takes any; it finds a font for every script that is not named.
std::string fontFamilies(std::string_view language) {
  std::string families = "Inter,Noto Sans,";
  if (language == "ja") families += "Noto Sans CJK JP,";
  if (language == "ko") families += "Noto Sans CJK KR,";
  if (language == "zh-cn") families += "Noto Sans CJK SC,";
  if (language == "zh-tw") families += "Noto Sans CJK TC,";
  return families +=
         "Noto Sans Arabic,Noto Sans Hebrew,Noto Sans Devanagari,Noto Sans Thai,"
         "Noto Sans Armenian,Noto Sans Georgian,Noto Sans Lao,sans-serif";
}

// Lengths beyond this many points are treated as this large: Pango counts in 1/1024 point in 32
// bits.
constexpr double largestLength = 100'000;

// No line is laid out narrower than this many font sizes. Pango 1.50 ends the process where a space
// that carries a mark is wider than the line. Captions are wider than that.
constexpr double narrowestLine = 1.5;

// Bytes of a text that are laid out first; twice as many each time that they do not suffice.
constexpr std::size_t firstPart = 2048;

// Bytes of a text that are looked at. No caption has room for more; laying it out would take
// minutes.
constexpr std::size_t mostBytes = 65'536;

int pangoUnits(double points) {
  return static_cast<int>(std::lround(std::min(points, largestLength) * PANGO_SCALE));
}

double points(int pangoUnits) { return static_cast<double>(pangoUnits) / PANGO_SCALE; }

bool isPositive(double length) { return length > 0 && std::isfinite(length); }

// The first `size` bytes, without a part of a character at their end.
std::string_view firstBytes(std::string_view text, std::size_t size) {
  if (text.size() <= size) return text;
  const auto isInside = [&] { return (static_cast<unsigned char>(text[size]) & 0xC0U) == 0x80U; };
  for (int i = 0; i < 3 && size > 0 && isInside(); ++i) --size;
  return text.substr(0, size);
}

// The end of `text` without the blanks before it.
std::size_t withoutBlanks(std::string_view text, std::size_t end) {
  while (end > 0) {
    const char* const last = g_utf8_prev_char(text.data() + end);
    if (!isBlank(g_utf8_get_char(last))) break;
    end = static_cast<std::size_t>(last - text.data());
  }
  return end;
}

// Takes the width from the glyphs of `run` for the bytes from `begin` to `end` of its text.
void closeUp(PangoLayoutRun* run, const char* text, std::size_t begin, std::size_t end) {
  PangoGlyphItemIter cluster;
  for (gboolean has = pango_glyph_item_iter_init_start(&cluster, run, text); has;
       has = pango_glyph_item_iter_next_cluster(&cluster)) {
    const auto at = static_cast<std::size_t>(cluster.start_index);
    if (at < begin || at >= end) continue;
    const int step = cluster.start_glyph < cluster.end_glyph ? 1 : -1;
    for (int i = cluster.start_glyph; i != cluster.end_glyph; i += step) {
      run->glyphs->glyphs[i].geometry.width = 0;
    }
  }
}

// Moves the ellipsis of `line` up to the last letter before it. Blanks may stand there, and where
// text runs from the right, Pango also gives the ellipsis what is left over of the line.
void closeUpEllipsis(PangoLayoutLine* line, std::string_view text) {
  for (const GSList* each = line->runs; each != nullptr; each = each->next) {
    const auto* ellipsis = static_cast<PangoLayoutRun*>(each->data);
    const PangoItem* item = ellipsis->item;
    if ((item->analysis.flags & PANGO_ANALYSIS_FLAG_IS_ELLIPSIS) == 0) continue;
    for (int i = 0; i < ellipsis->glyphs->num_glyphs; ++i) {
      PangoGlyphInfo& glyph = ellipsis->glyphs->glyphs[i];
      PangoRectangle logical;
      pango_font_get_glyph_extents(item->analysis.font, glyph.glyph, nullptr, &logical);
      glyph.geometry.width = logical.width;
    }
    const auto end = static_cast<std::size_t>(item->offset);
    const std::size_t begin = withoutBlanks(text, end);
    for (const GSList* run = line->runs; run != nullptr && begin < end; run = run->next) {
      if (run != each) closeUp(static_cast<PangoLayoutRun*>(run->data), text.data(), begin, end);
    }
    return;
  }
}

// Text has the same measures at every scale: no hinting, no rounding to pixels.
void setFontOptions(PangoContext* context) {
  const CairoFontOptionsPtr options(cairo_font_options_create());
  cairo_font_options_set_antialias(options.get(), CAIRO_ANTIALIAS_GRAY);
  cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_NONE);
  cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
  pango_cairo_context_set_font_options(context, options.get());
  pango_context_set_round_glyph_positions(context, FALSE);
}

}  // namespace

TextSetter::TextSetter()
    : fontMap_(pango_cairo_font_map_new()),
      context_(pango_font_map_create_context(fontMap_.get())),
      font_(pango_font_description_new()) {
  setFontOptions(context_.get());
  pango_font_description_set_weight(font_.get(), PANGO_WEIGHT_MEDIUM);

  layout_.reset(pango_layout_new(context_.get()));
  pango_layout_set_wrap(layout_.get(), PANGO_WRAP_WORD_CHAR);
  lastLine_.reset(pango_layout_new(context_.get()));
  pango_layout_set_ellipsize(lastLine_.get(), PANGO_ELLIPSIZE_END);
}

// Below a line's top, in font sizes: the system font stands in the middle of its line.
double TextSetter::baseline() {
  if (baseline_) return *baseline_;
  constexpr double size = 100;
  const PangoContextPtr context(pango_font_map_create_context(fontMap_.get()));
  setFontOptions(context.get());
  const PangoFontPtr font(pango_font_description_new());
  pango_font_description_set_family(font.get(), fontFamilies("en").c_str());
  pango_font_description_set_weight(font.get(), PANGO_WEIGHT_MEDIUM);
  pango_font_description_set_absolute_size(font.get(), size * PANGO_SCALE);
  const PangoMetricsPtr metrics(
      pango_context_get_metrics(context.get(), font.get(), pango_language_from_string("en")));
  const double ascent = points(pango_font_metrics_get_ascent(metrics.get())) / size;
  const double descent = points(pango_font_metrics_get_descent(metrics.get())) / size;
  baseline_ = (lineHeight - ascent - descent) / 2 + ascent;
  return *baseline_;
}

bool TextSetter::setCommonLanguage(const char* language) {
  return std::string_view(std::exchange(commonLanguage_, language)) != language;
}

// Lays out the text, or as much of it as has `lines` lines and more: the last line of a part may be
// broken elsewhere in the whole.
void TextSetter::layOut(std::string_view text, double fontSize, double width, double lines) {
  const std::string shown = shownText(firstBytes(text, mostBytes));
  const char* const language = languageTag(shown, commonLanguage_);
  pango_font_description_set_family(font_.get(), fontFamilies(language).c_str());
  pango_font_description_set_absolute_size(font_.get(), pangoUnits(fontSize));
  pango_context_set_language(context_.get(), pango_language_from_string(language));
  pango_layout_set_font_description(layout_.get(), font_.get());
  pango_layout_set_width(layout_.get(), pangoUnits(std::fmax(width, fontSize * narrowestLine)));
  for (std::size_t size = firstPart;; size *= 2) {
    const std::string_view part = firstBytes(shown, size);
    pango_layout_set_text(layout_.get(), part.data(), static_cast<int>(part.size()));
    if (part.size() == shown.size()) return;
    if (pango_layout_get_line_count(layout_.get()) - 1 > lines) return;
  }
}

double TextSetter::height(std::string_view text, double fontSize, double width, double most) {
  if (!isPositive(fontSize) || !isPositive(width)) return 0;
  pango_context_set_matrix(context_.get(), nullptr);
  const double pitch = fontSize * lineHeight;
  layOut(text, fontSize, width, most / pitch);
  return std::fmin(pango_layout_get_line_count(layout_.get()) * pitch, most);
}

void TextSetter::show(cairo_t* context, std::string_view text, double fontSize, const Rect& place) {
  if (!isPositive(fontSize) || !isPositive(place.width) || !isPositive(place.height)) return;
  pango_cairo_update_context(context, context_.get());
  const double pitch = fontSize * lineHeight;
  // A thousandth of a line lost to rounding costs no line.
  const double room = std::fmax(std::floor(place.height / pitch + 0.001), 1);
  layOut(text, fontSize, place.width, room);

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
  cairo_move_to(context, lineTop.x + indent, lineTop.y + baseline() * fontSize);
  pango_cairo_show_layout_line(context, line);
}

// Shows all that follows from `line` of `layout_` on, as one line with an ellipsis: in the font,
// the language and the width of the whole.
void TextSetter::showRest(cairo_t* context, PangoLayoutLine* line, double fontSize, double width,
                          Point lineTop) {
  const std::string rest =
      onOneLine(pango_layout_get_text(layout_.get()) + pango_layout_line_get_start_index(line));
  // Its direction is its paragraph's, even where its own first letter is of the other one.
  pango_context_set_base_dir(context_.get(), pango_layout_line_get_resolved_direction(line));
  pango_layout_set_auto_dir(lastLine_.get(), FALSE);
  pango_layout_set_font_description(lastLine_.get(), font_.get());
  pango_layout_set_width(lastLine_.get(), pangoUnits(width));
  pango_layout_set_text(lastLine_.get(), rest.data(), static_cast<int>(rest.size()));
  PangoLayoutLine* last = pango_layout_get_line(lastLine_.get(), 0);
  closeUpEllipsis(last, rest);
  showLine(context, last, fontSize, width, lineTop);
  pango_context_set_base_dir(context_.get(), PANGO_DIRECTION_WEAK_LTR);
}

}  // namespace vellora
