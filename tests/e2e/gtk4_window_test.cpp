// Captions over a real program whose toolkit does not know where its windows are.
#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>

#include "e2e/desk.h"
#include "support/x_client.h"

namespace vellora::e2e {
namespace {

constexpr int rowCount = 5;

constexpr const char* description = R"([Player]
Name=A player on GTK 4
[Window]
Class=vellora-gtk4-player
[Lyrics]
Role=scroll pane
Name=Lyrics
[Row]
Role=push button
[Title]
Role=label
)";

std::string rowText(int row) { return "Line " + std::to_string(row) + " of the song"; }

// Who decorates the window, and the toolkits' scale.
struct Setting {
  const char* decoration;  // "server", "client", or "shadow": the program, with a shadow around
  int scale;
};
void PrintTo(const Setting& setting, std::ostream* out) {
  *out << setting.decoration << setting.scale;
}

class Gtk4Window : public Desk, public testing::WithParamInterface<Setting> {
 protected:
  void SetUp() override {
    ASSERT_NO_FATAL_FAILURE(Desk::SetUp());
    const std::filesystem::path players =
        std::filesystem::path(std::getenv("XDG_DATA_HOME")) / "vellora/players";
    std::filesystem::create_directories(players);
    std::ofstream(players / "gtk4.player") << description;
    environment["GDK_SCALE"] = std::to_string(GetParam().scale);
    if (GetParam().decoration == std::string("shadow")) announceShadows();
    startWindow();
  }

  // As the overlay does, where it may ask for it.
  static void switchAccessibilityOn() {
    outputOf({"gdbus", "call", "--session", "--dest", "org.a11y.Bus", "--object-path",
              "/org/a11y/bus", "--method", "org.freedesktop.DBus.Properties.Set", "org.a11y.Status",
              "IsEnabled", "<true>"});
  }

  // As window managers do that leave the shadow to programs.
  void announceShadows() {
    XClient client(std::getenv("DISPLAY"));
    auto supported = client.numbers(client.root(), "_NET_SUPPORTED");
    supported.push_back(client.atom("_GTK_FRAME_EXTENTS"));
    xcb_change_property(client.connection(), XCB_PROP_MODE_REPLACE, client.root(),
                        client.atom("_NET_SUPPORTED"), XCB_ATOM_ATOM, 32,
                        static_cast<std::uint32_t>(supported.size()), supported.data());
    ASSERT_EQ(client.numbers(client.root(), "_NET_SUPPORTED"), supported);
  }

  void startWindow() {
    const bool decoratesItself = GetParam().decoration != std::string("server");
    player = std::make_unique<Process>(
        std::vector<std::string>{VELLORA_GTK4_PLAYER, decoratesItself ? "client" : "server"},
        folder / "player.log", environment);
    ASSERT_TRUE(waitFor([&] { return rowsSeen().size() == rowCount; })) << "no window came";
  }

  // Where the rows are on the screen, by their colours, in device pixels.
  std::map<int, Rect> rowsSeen() const {
    const auto picture = screen->whole();
    return picture ? rowsIn(*picture) : std::map<int, Rect>();
  }

  static std::map<int, Rect> rowsIn(const witness::Picture& picture) {
    std::map<int, Rect> rows;
    for (int y = 0; y < picture.height; ++y) {
      for (int x = 0; x < picture.width; ++x) {
        const std::uint32_t color = picture.at(x, y);
        const int row = static_cast<int>((color >> 8U) & 0xffU) - 0x10;
        if ((color & 0xff00ffU) != 0xc00040U || row < 0 || row >= rowCount) continue;
        const auto [found, isNew] = rows.try_emplace(row, Rect{double(x), double(y), 1, 1});
        Rect& box = found->second;
        const double left = std::min<double>(box.x, x), right = std::max<double>(box.maxX(), x + 1);
        box = {left, box.y, right - left, y + 1 - box.y};
      }
    }
    return rows;
  }

  // Where Vellora takes the rows to be, in points.
  std::map<int, Rect> rowsRead() {
    const std::string log = folder / "diagnosis.log";
    Process diagnosis({VELLORA_PROGRAM, "--diagnose"}, log, environment);
    EXPECT_TRUE(waitFor([&] { return !diagnosis.running(); }));
    std::map<int, Rect> rows;
    std::ifstream lines(log);
    for (std::string line; std::getline(lines, line);) {
      Rect place;
      const auto text = line.find("): ");
      if (text == std::string::npos || std::sscanf(line.c_str(), "(%lf, %lf, %lf, %lf)", &place.x,
                                                   &place.y, &place.width, &place.height) != 4) {
        continue;
      }
      for (int row = 0; row < rowCount; ++row) {
        if (line.substr(text + 3) == rowText(row)) rows[row] = place;
      }
    }
    return rows;
  }

  bool areWhereTheyAreSeen() {
    const auto seen = rowsSeen();
    const auto read = rowsRead();
    if (read.size() != rowCount || seen.size() != rowCount) return false;
    const double scale = GetParam().scale;
    return std::ranges::all_of(read, [&](const auto& row) {
      const Rect& place = row.second;
      return Rect{place.x * scale, place.y * scale, place.width * scale, place.height * scale} ==
             seen.at(row.first);
    });
  }

  OverlaySnapshot translation() const {
    OverlaySnapshot snapshot;
    snapshot.enabled = true;
    snapshot.musicTitle = "Sakura";
    snapshot.musicArtist = "Choir";
    snapshot.fontSize = 20;
    for (int row = 0; row < rowCount; ++row) {
      snapshot.lines.edit().push_back({rowText(row), std::to_string(row) + " of the translation"});
    }
    return snapshot;
  }

  static Rect belowRow(const Rect& row) {
    return {row.x, row.maxY() + 1, row.width, 30.0 * GetParam().scale};
  }

  // The screen as soon as it has every row, elsewhere than `formerly`, with nothing below any.
  std::optional<witness::Picture> bareScreen(const std::map<int, Rect>& formerly = {}) {
    std::optional<witness::Picture> picture;
    const bool isBare = waitFor([&] {
      picture = screen->whole();
      const auto rows = picture ? rowsIn(*picture) : std::map<int, Rect>();
      return rows.size() == rowCount && rows != formerly &&
             std::ranges::all_of(rows, [&](const auto& row) {
               const Rect below = belowRow(row.second);
               const int left = static_cast<int>(below.x), top = static_cast<int>(below.y);
               for (int y = top; y < below.maxY(); ++y) {
                 for (int x = left; x < below.maxX(); ++x) {
                   if (picture->at(x, y) != picture->at(left, top)) return false;
                 }
               }
               return true;
             });
    });
    return isBare ? picture : std::nullopt;
  }

  // Between each row and what is below it something is painted that was not there, and on the rows
  // nothing.
  bool captionsStandUnder(const std::map<int, Rect>& rows, const witness::Picture& before) const {
    const auto now = screen->whole();
    return now && std::ranges::all_of(rows, [&](const auto& row) {
             const Rect& place = row.second;
             return witness::difference(before, *now, belowRow(place)).changed > 100 &&
                    witness::difference(before, *now, place).changed == 0;
           });
  }

  void moveWindow(int x, int y) const {
    outputOf({"xdotool", "search", "--onlyvisible", "--class", "vellora-gtk4-player", "windowmove",
              std::to_string(x), std::to_string(y)});
  }
};

TEST_P(Gtk4Window, RowsAreReadWhereTheyStandOnTheScreen) {
  switchAccessibilityOn();
  EXPECT_TRUE(waitFor([&] { return areWhereTheyAreSeen(); }));
  const Rect before = rowsSeen().at(0);
  moveWindow(61, 83);
  EXPECT_TRUE(waitFor([&] { return rowsSeen().size() == rowCount && rowsSeen().at(0) != before; }));
  EXPECT_TRUE(waitFor([&] { return areWhereTheyAreSeen(); }));
}

TEST_P(Gtk4Window, CaptionsStandUnderItsRowsAndFollowItsMoves) {
  const auto before = bareScreen();
  ASSERT_TRUE(before);
  const auto rows = rowsIn(*before);
  keepSnapshot(translation());
  startOverlay();
  ASSERT_TRUE(waitFor([&] { return following() && captionsStandUnder(rows, *before); }));
  EXPECT_TRUE(statusIs("Following Music • 5 translated rows"));
  moveWindow(61, 83);
  dropSnapshot();
  ASSERT_TRUE(waitFor([&] { return !following(); }));
  const auto bare = bareScreen(rows);
  ASSERT_TRUE(bare);
  keepSnapshot(translation());
  EXPECT_TRUE(waitFor([&] { return following() && captionsStandUnder(rowsIn(*bare), *bare); }));
}

INSTANTIATE_TEST_SUITE_P(All, Gtk4Window,
                         testing::Values(Setting{"server", 1}, Setting{"client", 1},
                                         Setting{"shadow", 1}, Setting{"shadow", 2}),
                         testing::PrintToStringParamName());

}  // namespace
}  // namespace vellora::e2e
