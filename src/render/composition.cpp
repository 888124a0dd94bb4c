#include "render/composition.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "render/geometry.h"

namespace vellora {

namespace {

// A viewport of negative size shows nothing, although the rectangle arithmetic would turn it over.
bool showsNothing(const Rect& viewport) {
  return viewport.isEmpty() || viewport.width < 0 || viewport.height < 0;
}

// Drops what was looked up among other lines, and what was painted in their language.
void validateCache(const CompositionFields& fields, const OverlayLines& lines) {
  const bool unchanged = fields.lastLines == lines;
  fields.lastLines = lines;  // equal ones too, so that the next comparison costs nothing
  if (unchanged) return;
  fields.lineIndex = fields.prepared.isOf(lines) ? fields.prepared.index
                                                 : std::make_shared<const TranslationIndex>(lines);
  fields.translations.clear();
  std::vector<std::string_view> texts;
  texts.reserve(lines.size());
  for (const OverlayLine& line : lines) texts.push_back(line.translation);
  if (fields.painter.setTranslation(texts)) fields.canvas.forgetImages();
}

// The row's translation, looked up once for each set of lines; empty when it has none.
const std::string& translationOf(const CompositionFields& fields, const std::string& text) {
  const auto found = fields.translations.find(text);
  if (found != fields.translations.end()) return found->second;
  std::string translation;
  if (fields.lineIndex) translation = fields.lineIndex->translation(text).value_or(std::string());
  return fields.translations.emplace(text, std::move(translation)).first->second;
}

double captionHeight(CaptionPainter& painter, const std::string& translation, double fontSize,
                     const Rect& row, const Rect& viewport) {
  using Style = CompositionStyle;
  // Narrower than the text will be drawn, so that it never needs more height than was measured.
  const double width = std::fmax(viewport.maxX() - row.minX() - Style::measuringReserve,
                                 Style::smallestMeasuringWidth);
  const double height = painter.measureHeight(translation, fontSize, width, Style::measuringHeight);
  return std::fmin(std::ceil(height), captionHeightCap(fontSize)) + Style::padding;
}

std::vector<Caption> composeCaptions(const CompositionFields& fields, const MusicLayout& layout,
                                     const OverlaySnapshot& snapshot) {
  const double fontSize = captionFontSize(snapshot.fontSize);
  std::vector<Caption> captions;
  for (std::size_t i = 0; i < layout.rows.size(); ++i) {
    const MusicRow& row = layout.rows[i];
    if (!row.frame.intersects(layout.viewport)) continue;
    const std::string& translation = translationOf(fields, row.text);
    if (translation.empty()) continue;

    std::optional<Rect> nextRow;
    if (i + 1 < layout.rows.size()) nextRow = layout.rows[i + 1].frame;
    const double height =
        captionHeight(fields.painter, translation, fontSize, row.frame, layout.viewport);
    const std::optional<Rect> rect = OverlayGeometry::labelRect(row.frame, nextRow, layout.viewport,
                                                                height, snapshot.verticalOffset);
    if (!rect) continue;
    captions.push_back({translation, rect->offsetBy(-layout.window.minX(), -layout.window.minY()),
                        fontSize, OverlayFocus::softness(row.frame, layout.viewport)});
  }
  return captions;
}

std::string hide(const CompositionFields& fields, std::string_view message) {
  fields.panel.orderOut();
  return std::string(message);
}

}  // namespace

double captionFontSize(double snapshotFontSize) {
  using Style = CompositionStyle;
  return std::fmin(std::fmax(snapshotFontSize * Style::fontScale, Style::smallestFont),
                   Style::largestFont);
}

double captionHeightCap(double fontSize) {
  return std::ceil(fontSize * CompositionStyle::heightCap);
}

std::string render(const CompositionFields& fields, const std::optional<MusicLayout>& layout,
                   const OverlaySnapshot& snapshot, bool showPanel) {
  using Messages = CompositionMessages;
  if (!layout || showsNothing(layout->viewport)) return hide(fields, Messages::noLyrics);
  if (!fields.trackMatch.matches(layout->title, snapshot.musicTitle, snapshot.musicArtist)) {
    return hide(fields, Messages::otherSong);
  }

  validateCache(fields, snapshot.lines);
  std::vector<Caption> captions = composeCaptions(fields, *layout, snapshot);
  if (captions.empty()) return hide(fields, Messages::noRoom);

  const std::size_t count = captions.size();
  const Rect& window = layout->window;
  const double primaryHeight = fields.workspace.primaryScreenHeight().value_or(0);
  fields.panel.setFrame(OverlayGeometry::appKitRect(window, primaryHeight));
  fields.canvas.setFrame({0, 0, window.absoluteWidth(), window.absoluteHeight()});
  fields.canvas.setCaptions(std::move(captions));
  fields.canvas.setNeedsDisplay();
  if (showPanel) fields.panel.orderFrontRegardless();
  return std::string(Messages::followingPrefix) + std::to_string(count) +
         std::string(Messages::followingSuffix);
}

}  // namespace vellora
