// Looks at the screen as a stranger would, and says whether each visible lyric row has its caption
// where it belongs. Shares no code with the overlay's own reading and drawing.

#include <chrono>
#include <cstdio>
#include <string>
#include <string_view>
#include <utility>

#include <poll.h>

#include "base/files.h"
#include "exchange/records/json.h"
#include "witness/accessible_rows.h"
#include "witness/captions_seen.h"
#include "witness/page_rows.h"
#include "witness/picture_files.h"
#include "witness/screen.h"

namespace {

using namespace vellora;
using namespace vellora::witness;

constexpr std::string_view usage =
    "usage: vellora-demo-witness --snapshot FILE [--screenshot FILE.png] [--wait SECONDS]\n"
    "                            [--browser PROCESS --class WINDOW_CLASS]\n"
    "                            [--screen FILE.ppm --alone FILE.ppm --origin X,Y]\n"
    "\n"
    "Reads the player's lyric rows over the accessibility bus, takes a picture of the screen and\n"
    "one of the player's window alone (this needs a compositor), and compares the two in the band\n"
    "under each row. Tries again until all is right or SECONDS (default 8) have passed.\n"
    "The player is the stand-in player or, in a browser, its page.\n"
    "Where the desktop allows no such pictures (Wayland), they are taken from two files, one pixel "
    "a\n"
    "point, and the place of the window's content, in points, is told.\n"
    "Exit status: 0 captions stand where they belong, 1 they do not, 2 it could not be seen.\n";

constexpr const char* application = "com.apple.Music";

struct Options {
  unsigned browser = 0;  // its process; 0: the stand-in player
  std::string windowClass = application;
  std::string snapshot;
  std::string screenshot;
  double wait = 8;
  std::string screen;  // pictures to look at in the place of the X screen's
  std::string alone;
  Point origin;  // of what the player tells, in points
};

struct Sight {
  SeenPlayer player;
  CaptionsVerdict verdict;
  Picture screen;
};

std::optional<SeenPlayer> read(const Options& options) {
  PageQuery query;
  query.process = options.browser;
  auto seen = options.browser == 0 ? readPlayer(application) : readPage(query);
  if (seen) seen = movedBy(std::move(*seen), options.origin);
  return seen;
}

// One consistent look: the rows must stand still while the pictures are taken.
std::optional<Sight> look(const Screen& screen, const Options& options, std::string& problem) {
  const std::optional<SeenPlayer> before = read(options);
  std::optional<Picture> whole = screen.whole();
  const std::optional<WindowPicture> alone = screen.windowAlone(options.windowClass);
  const std::optional<SeenPlayer> after = read(options);
  const std::optional<std::string> file = readWholeFile(options.snapshot);
  const std::optional<OverlaySnapshot> snapshot =
      file ? decode<OverlaySnapshot>(*file) : std::nullopt;
  if (!before || !after) {
    problem = "the player does not answer on the accessibility bus";
  } else if (!whole || !alone) {
    problem = "no picture of the player's window alone (is a compositor running?)";
  } else if (!snapshot) {
    problem = "no snapshot at " + options.snapshot;
  } else if (*before != *after) {
    problem = "the rows move";
  } else {
    CaptionsVerdict verdict = judgeCaptions(*before, *snapshot, *whole, *alone);
    return Sight{*before, std::move(verdict), std::move(*whole)};
  }
  return std::nullopt;
}

void describe(const Sight& sight) {
  if (!sight.player.title.empty()) {
    std::printf("  the player shows: %s\n", sight.player.title.c_str());
  }
  for (const RowVerdict& row : sight.verdict.rows) {
    const char* say = row.undecided      ? "no room to say"
                      : row.beyondScreen ? "beyond the screen"
                      : row.expected     ? (row.right ? "caption seen" : "CAPTION MISSING")
                                         : (row.right ? "no caption, as it should be"
                                                      : "A CAPTION THAT DOES NOT BELONG HERE");
    std::printf("  %-30s y %.0f–%.0f", say, row.band.minY(), row.band.maxY());
    // The band of an undecided row may reach beyond the player's window.
    if (!row.undecided && !row.beyondScreen) {
      std::printf(": %zu of %zu pixels differ", row.seen.changed, row.seen.pixels);
    }
    std::printf("  | %s\n", row.text.c_str());
  }
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  for (int i = 1; i < argc; ++i) {
    const std::string_view flag = argv[i];
    if (flag == "--help") {
      std::fputs(usage.data(), stdout);
      return 0;
    }
    if (i + 1 >= argc) {
      std::fputs(usage.data(), stderr);
      return 2;
    }
    const char* const value = argv[++i];
    if (flag == "--snapshot") {
      options.snapshot = value;
    } else if (flag == "--screenshot") {
      options.screenshot = value;
    } else if (flag == "--browser") {
      options.browser = static_cast<unsigned>(std::atoi(value));
    } else if (flag == "--class") {
      options.windowClass = value;
    } else if (flag == "--screen") {
      options.screen = value;
    } else if (flag == "--alone") {
      options.alone = value;
    } else if (flag == "--origin") {
      if (std::sscanf(value, "%lf,%lf", &options.origin.x, &options.origin.y) != 2) {
        std::fputs(usage.data(), stderr);
        return 2;
      }
    } else if (flag == "--wait") {
      options.wait = std::atof(value);
    } else {
      std::fputs(usage.data(), stderr);
      return 2;
    }
  }
  const std::unique_ptr<Screen> screen =
      options.screen.empty() ? openXScreen() : openPictures(options.screen, options.alone);
  if (!screen) {
    std::fputs("vellora-demo-witness: no display, or no pictures to be read\n", stderr);
    return 2;
  }
  const auto deadline = std::chrono::steady_clock::now() +
                        std::chrono::duration_cast<std::chrono::steady_clock::duration>(
                            std::chrono::duration<double>(options.wait));
  std::optional<Sight> last;
  std::string problem;
  do {
    if (std::optional<Sight> sight = look(*screen, options, problem)) last = std::move(sight);
    if (last && last->verdict.right) break;
    poll(nullptr, 0, 100);
  } while (std::chrono::steady_clock::now() < deadline);
  if (!last) {
    std::fprintf(stderr, "vellora-demo-witness: %s\n", problem.c_str());
    return 2;
  }
  if (!options.screenshot.empty() && !last->screen.writePng(options.screenshot)) {
    std::fprintf(stderr, "vellora-demo-witness: cannot write %s\n", options.screenshot.c_str());
    return 2;
  }
  describe(*last);
  std::printf("  %zu captions stand under their rows", last->verdict.captions);
  if (last->verdict.beyondScreen > 0) {
    std::printf(", %zu belong beyond the screen", last->verdict.beyondScreen);
  }
  std::printf(": %s\n", last->verdict.right ? "right" : "WRONG");
  return last->verdict.right ? 0 : 1;
}
