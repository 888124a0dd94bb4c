#include <cmath>
#include <fstream>

#include "e2e/desk.h"

namespace vellora::e2e {
namespace {

struct Columns {
  int first = 0;
  int last = 0;
};

// The outermost columns of `area` (pixels) in which `wanted` holds for a pixel.
template <typename Wanted>
std::optional<Columns> columns(const Rect& area, const Wanted& wanted) {
  std::optional<Columns> found;
  for (int x = static_cast<int>(area.minX()); x < area.maxX(); ++x) {
    for (int y = static_cast<int>(area.minY()); y < area.maxY(); ++y) {
      if (!wanted(x, y)) continue;
      if (!found) found = Columns{x, x};
      found->last = x;
      break;
    }
  }
  return found;
}

// Letters are bright on the player's dark ground and on the plates: more than half of the green.
std::optional<Columns> ink(const witness::Picture& picture, const Rect& area) {
  return columns(area, [&](int x, int y) { return (picture.at(x, y) >> 8 & 0xFF) > 0x80; });
}

class AlignmentOnTheDesk : public Desk {
 protected:
  // A song whose every line begins with a letter that has the same side bearing in every weight of
  // the fonts, a fortieth of their size.
  void writeLibrary() {
    const std::filesystem::path song = folder / "library" / "01-words";
    std::filesystem::create_directories(song);
    std::ofstream lyrics(song / "lyrics.lrc");
    std::ofstream translation(song / "translation.lrc");
    lyrics << "[ti:Words]\n[ar:A]\n[al:B]\n[la:en]\n[length:00:20]\n";
    translation << "[la:en]\n";
    int second = 0;
    for (const char* line : {"Above all", "Aware of it", "A word", "Among us", "Again"}) {
      const std::string time = "[00:0" + std::to_string(++second) + ".00]";
      lyrics << time << line << "\n";
      translation << time << line << "\n";
    }
  }

  // Player and captions with a window of that size, at the third line, each row translated into
  // its own text.
  void show(const std::string& geometry) {
    if (player) player->stop();
    ASSERT_TRUE(waitFor([&] { return !seenPlayer(); }));
    ASSERT_NO_FATAL_FAILURE(startPlayer({"--library", folder / "library", "--paused", "--position",
                                         "3.5", "--geometry", geometry}));
    OverlaySnapshot same = snapshotOfPlayer();
    for (OverlayLine& line : same.lines.edit()) line.translation = line.source;
    keepSnapshot(same);
    if (!overlay) startOverlay();
  }

  // The third row's text and its caption's, its plate and the row's frame, in pixels.
  struct Sight {
    Columns text;
    Columns caption;
    Columns plate;
    Rect row;
  };
  std::optional<Sight> sight(double scale) const {
    const auto before = seenPlayer();
    const auto whole = screen->whole();
    const auto alone = screen->windowAlone("com.apple.Music");
    if (!before || !whole || !alone || seenPlayer() != before || before->rows.size() != 5) {
      return std::nullopt;
    }
    const Rect row = witness::scaled(before->rows[2].frame, scale);
    const Rect viewport = witness::scaled(before->viewport, scale);
    const Rect next = witness::scaled(before->rows[3].frame, scale);
    const Rect below{viewport.minX(), row.maxY(), viewport.width, next.minY() - row.maxY()};
    const auto text = ink(*alone, row);
    const auto caption = ink(*whole, below);
    const auto plate = columns(below, [&](int x, int y) {
      return witness::difference(*whole, *alone, {double(x), double(y), 1, 1}).changed > 0;
    });
    if (!text || !caption || !plate) return std::nullopt;
    return Sight{*text, *caption, *plate, row};
  }

  // In pixels: how far the caption's text stands right of the row's, and how much further the row
  // reaches than its plate on either side.
  struct Offsets {
    double text = 0;
    double left = 0;
    double right = 0;
  };
  static Offsets offsets(const Sight& seen) {
    return {double(seen.caption.first - seen.text.first), seen.plate.first - seen.row.minX(),
            seen.row.maxX() - (seen.plate.last + 1)};
  }

  void check(const std::string& geometry, double scale) {
    SCOPED_TRACE(geometry);
    ASSERT_NO_FATAL_FAILURE(show(geometry));
    const auto about = [](double value, double wanted) { return std::abs(value - wanted) <= 1; };
    std::optional<Offsets> last;
    const bool aligned = waitFor([&] {
      if (const auto seen = sight(scale)) last = offsets(*seen);
      return last && about(last->text, 0) && about(last->left, 2 * scale) &&
             about(last->right, 2 * scale);
    });
    ASSERT_TRUE(last) << "no caption under the sung row";
    EXPECT_TRUE(aligned) << "the caption's text stands " << last->text
                         << " pixels right of the row's; the row reaches " << last->left
                         << " pixels further than its plate on the left, " << last->right
                         << " on the right";
  }
};

TEST_F(AlignmentOnTheDesk, ARowsTextBeginsWhereItsCaptionsTextBegins) {
  writeLibrary();
  for (const char* geometry : {"1000x700", "700x500", "1203x641"}) {
    ASSERT_NO_FATAL_FAILURE(check(geometry, 1));
  }
}

TEST_F(AlignmentOnTheDesk, ARowsTextBeginsWhereItsCaptionsTextBeginsAtScaleTwo) {
  writeLibrary();
  environment["GDK_SCALE"] = "2";
  for (const char* geometry : {"620x380", "560x360"}) {
    ASSERT_NO_FATAL_FAILURE(check(geometry, 2));
  }
}

}  // namespace
}  // namespace vellora::e2e
