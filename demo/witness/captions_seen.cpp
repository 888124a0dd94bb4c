#include "witness/captions_seen.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace vellora::witness {

namespace {

// Height in points that a one-line caption of this font needs at the most, with the gap above it
// and the margin below it; a two-line caption may need twice the text.
double roomForOneLine(double font) { return 2 + std::ceil(font * 1.35) + 8 + 3; }
double roomForTwoLines(double font) { return 2 + std::ceil(font * 2.6) + 8 + 3; }

// What the player shows where nobody sings. A row without a letter or digit is never translated,
// whatever the snapshot says.
constexpr std::string_view rest = "♪";

bool hasTranslation(const OverlaySnapshot& snapshot, const std::string& text) {
  if (text == rest) return false;
  return std::ranges::any_of(snapshot.lines, [&](const OverlayLine& line) {
    return line.source == text && line.translation.find_first_not_of(" \t\n") != std::string::npos;
  });
}

// Whether so much of a band (pixels) is on the screen that a plate there would be seen: beside its
// corners and its soft edges.
bool canBeSeen(const Rect& band, const Picture& screen, double scale) {
  const Rect seen = band.intersection({0, 0, double(screen.width), double(screen.height)});
  return !seen.isEmpty() && seen.width >= 40 * scale && seen.height * 2 >= band.height;
}

}  // namespace

double pixelsPerPoint(const SeenPlayer& player, const WindowPicture& window) {
  if (player.window.isEmpty()) return 1;
  return std::max(1.0, std::round(window.frame.width / player.window.width));
}

Rect scaled(const Rect& rect, double scale) {
  return {rect.x * scale, rect.y * scale, rect.width * scale, rect.height * scale};
}

CaptionsVerdict judgeCaptions(const SeenPlayer& player, const OverlaySnapshot& snapshot,
                              const Picture& screen, const WindowPicture& window) {
  CaptionsVerdict verdict;
  verdict.right = true;
  const double scale = pixelsPerPoint(player, window);
  const double font = std::clamp(snapshot.fontSize * 0.65, 12.0, 32.0);
  const Rect& viewport = player.viewport;
  // Rows that are scrolled out of sight are listed too, wherever the toolkit believes them to be.
  std::vector<SeenRow> rows = player.rows;
  std::ranges::stable_sort(
      rows, [](const SeenRow& a, const SeenRow& b) { return a.frame.minY() < b.frame.minY(); });
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const Rect& row = rows[i].frame;
    if (!row.intersects(viewport) || row.isEmpty()) continue;
    RowVerdict one;
    one.text = rows[i].text;
    double below = viewport.maxY();
    if (i + 1 < rows.size()) below = std::min(below, rows[i + 1].frame.minY());
    const double room = below - row.maxY() - snapshot.verticalOffset;
    const double left = std::max(row.minX(), viewport.minX()) + 2;
    const Rect band{left, row.maxY() + 2 + snapshot.verticalOffset, viewport.maxX() - 22 - left,
                    std::min(room - 4, std::ceil(font * 1.35) + 8)};
    one.band = scaled(band, scale);
    const bool middleInside = viewport.contains(Point{row.midX(), row.midY()});
    one.expected = hasTranslation(snapshot, one.text) && middleInside;
    one.undecided = band.height < 8 ||
                    (one.expected && room < std::max(roomForOneLine(font), roomForTwoLines(font)));
    one.beyondScreen = !canBeSeen(one.band, screen, scale);
    one.seen = difference(screen, window, one.band);
    // A plate covers its whole band; a neighbour's blur spills over no more than an edge of it.
    const bool caption = one.seen.pixels > 0 && one.seen.changed * 2 > one.seen.pixels;
    one.right = one.undecided || one.beyondScreen || caption == one.expected;
    if (one.expected && one.beyondScreen && !one.undecided) ++verdict.beyondScreen;
    if (one.expected && !one.beyondScreen && caption) ++verdict.captions;
    verdict.right = verdict.right && one.right;
    verdict.rows.push_back(std::move(one));
  }
  verdict.right = verdict.right && verdict.captions > 0;
  return verdict;
}

}  // namespace vellora::witness
