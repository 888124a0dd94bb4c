#include "witness/accessible_rows.h"

#include "witness/accessible_element.h"

namespace vellora::witness {

namespace {

void collect(const Element& element, bool inLyrics, SeenPlayer& seen, int depth) {
  if (depth > 30) return;
  if (element.text("AccessibleId") == "Music.nowPlaying.title-Music.nowPlaying.subtitle") {
    seen.title = element.text("Description");
    if (seen.title.empty()) seen.title = element.text("Name");
  }
  const std::string label = element.text("Name");
  if (!inLyrics && label.ends_with(" lyrics")) seen.lyricsSwitch = {label, element.extents()};
  inLyrics = inLyrics || label == "Lyrics" || element.text("Description") == "Lyrics";
  if (inLyrics) {
    const std::string role = element.role();
    if (role == "scroll pane") seen.viewport = element.extents().intersection(seen.window);
    if (role == "push button") seen.rows.push_back({label, element.extents()});
  }
  for (const Element& child : element.children()) collect(child, inLyrics, seen, depth + 1);
}

}  // namespace

SeenPlayer movedBy(SeenPlayer seen, Point origin) {
  const auto move = [&](Rect& frame) { frame = frame.offsetBy(origin.x, origin.y); };
  move(seen.window);
  move(seen.viewport);
  for (SeenRow& row : seen.rows) move(row.frame);
  move(seen.lyricsSwitch.frame);
  return seen;
}

std::optional<SeenPlayer> readPlayer(const std::string& application) {
  const Connection bus = accessibilityBus();
  if (!bus) return std::nullopt;
  for (const Element& program : desktopOf(bus.get()).children()) {
    if (program.text("Name") != application) continue;
    const std::vector<Element> windows = program.children();
    if (windows.empty()) return std::nullopt;
    SeenPlayer seen;
    seen.window = windows.front().extents();
    collect(windows.front(), false, seen, 0);
    return seen;
  }
  return std::nullopt;
}

}  // namespace vellora::witness
