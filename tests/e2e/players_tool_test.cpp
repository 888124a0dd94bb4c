#include <cmath>
#include <cstdlib>
#include <fstream>

#include <gmock/gmock.h>

#include "e2e/desk.h"

namespace vellora::e2e {
namespace {

using ::testing::HasSubstr;

// What vellora-players tells of the window in front.
class PlayersToolOnTheDesk : public Desk {
 protected:
  void SetUp() override {
    ASSERT_NO_FATAL_FAILURE(Desk::SetUp());
    ::setenv("XDG_DATA_HOME", (folder / "data").c_str(), 1);
    outputOf({"gdbus", "call", "--session", "--dest", "org.a11y.Bus", "--object-path",
              "/org/a11y/bus", "--method", "org.freedesktop.DBus.Properties.Set", "org.a11y.Status",
              "IsEnabled", "<true>"});
    ASSERT_NO_FATAL_FAILURE(startPlayer({"--paused"}));
    ASSERT_TRUE(waitFor([this] { return !rows().empty(); }));
  }

  std::vector<witness::SeenRow> rows() const {
    const auto seen = seenPlayer();
    return seen ? seen->rows : std::vector<witness::SeenRow>();
  }

  // In place of the one that comes with Vellora.
  void describe(const std::string& lyrics) const {
    const auto place = folder / "data" / "vellora" / "players";
    std::filesystem::create_directories(place);
    std::ofstream(place / "com.apple.Music.player")
        << "[Player]\nName=Stand-in\n[Window]\nClass=com.apple.Music\n"
        << lyrics;
  }

  // Once it tells this; else what it told last.
  std::string shownWith(const std::string& text) {
    std::string told;
    waitFor([&] {
      told = outputOf({VELLORA_PLAYERS_PROGRAM, "show"});
      return told.find(text) != std::string::npos;
    });
    return told;
  }
};

std::string rounded(double value) { return std::to_string(std::lround(value)); }

TEST_F(PlayersToolOnTheDesk, TellsEachRowWithItsPlaceOnTheScreen) {
  describe("[Lyrics]\nRole=scroll pane\nName=Lyrics\n[Row]\nRole=push button\n");
  const std::string told = shownWith("rows, with place and size in points");
  EXPECT_THAT(told, HasSubstr("Window: class \"com.apple.Music\", process " +
                              std::to_string(player->pid()) + "\n"));
  EXPECT_THAT(told, HasSubstr("\ncom.apple.Music: This one counts.\n"));
  EXPECT_THAT(told, HasSubstr("\nLyrics: scroll pane \"Lyrics\""));
  const auto seen = seenPlayer();
  ASSERT_TRUE(seen);
  std::size_t inSight = 0;
  for (const witness::SeenRow& row : seen->rows) {
    const Rect& frame = row.frame;
    if (!frame.intersects(seen->viewport)) continue;
    ++inSight;
    const std::string place = rounded(frame.x) + ',' + rounded(frame.y) + ' ' +
                              rounded(frame.width) + 'x' + rounded(frame.height) + "  ";
    const std::size_t at = told.find("  " + place);
    ASSERT_NE(at, std::string::npos) << place << row.text << "\n" << told;
    EXPECT_THAT(told.substr(at, told.find('\n', at) - at), HasSubstr('"' + row.text + '"'));
  }
  EXPECT_GE(inSight, 3U);
  EXPECT_THAT(told, HasSubstr("  out of sight  \"" + seen->rows.back().text + "\"\n"));
}

TEST_F(PlayersToolOnTheDesk, ProposesADescriptionThatCountsThen) {
  describe("[Lyrics]\nName=Nothing\n[Row]\nRole=push button\n");
  const std::string told = shownWith("A description to begin with");
  const std::size_t draft = told.find("[Lyrics]\n", told.find("[Window]\n"));
  ASSERT_NE(draft, std::string::npos) << told;
  describe(told.substr(draft));
  EXPECT_THAT(shownWith("rows, with place and size in points"),
              HasSubstr("  \"" + rows().front().text + "\"\n"));
}

TEST_F(PlayersToolOnTheDesk, LeavesAPlayerThatIsReadAsItIsToTheDiagnosis) {
  const std::string told = shownWith("diagnose");
  EXPECT_THAT(told, HasSubstr("\ncom.apple.Music: It says nothing about the lyrics"));
  EXPECT_THAT(told, HasSubstr("\nWhat is read in it, \"vellora --diagnose\" tells."));
}

}  // namespace
}  // namespace vellora::e2e
