#include "main/diagnosis.h"

#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "base/number_text.h"
#include "music/lyrics_layout_reader.h"

namespace vellora {

namespace {

std::optional<MusicLayout> readRunningMusic(Platform& platform, Accessibility& accessibility,
                                            const ReadingLimits& limits) {
  const std::vector<std::shared_ptr<const RunningApplication>> running =
      platform.makeWorkspace()->runningApplications(musicPlayer.identifier);
  if (running.empty()) return std::nullopt;
  return readMusic(running.front()->processIdentifier(), accessibility, *platform.makeClock(),
                   musicPlayer, limits);
}

std::string cutText(const ReadingCut& cut, const ReadingLimits& limits) {
  std::string text;
  if (cut.byElements) text += ", after " + std::to_string(limits.elements) + " elements";
  if (cut.byTime) text += ", after " + plainNumber(limits.seconds) + " seconds";
  if (cut.byDepth) text += ", below " + std::to_string(limits.depth + 1) + " levels";
  return "The reading may have been cut short" + text;
}

}  // namespace

std::string rectText(const Rect& rect) {
  return "(" + plainNumber(rect.x) + ", " + plainNumber(rect.y) + ", " + plainNumber(rect.width) +
         ", " + plainNumber(rect.height) + ")";
}

void diagnose(Platform& platform, std::ostream& output, std::ostream& notes) {
  const std::shared_ptr<Accessibility> accessibility = platform.makeAccessibility();
  output << "Accessibility trusted: " << (accessibility->isTrusted() ? "true" : "false")
         << std::endl;

  const ReadingLimits limits;
  const std::optional<MusicLayout> layout = readRunningMusic(platform, *accessibility, limits);
  if (!layout) return;
  output << "Window: " << rectText(layout->window) << ", viewport: " << rectText(layout->viewport)
         << ", title: " << layout->title << std::endl;
  for (const MusicRow& row : layout->rows) {
    if (!row.frame.intersects(layout->viewport)) continue;
    output << rectText(row.frame) << ": " << row.text << std::endl;
  }
  if (layout->cut) notes << cutText(layout->cut, limits) << std::endl;
}

}  // namespace vellora
