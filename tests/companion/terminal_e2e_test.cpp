#include "companion/companion_desk.h"
#include "companion/terminal.h"

namespace vellora::e2e {
namespace {

TEST_F(CompanionOnTheDesk, ItsTerminalViewDrivesPlayerAndCaptions) {
  startOverlay();
  companion::Terminal terminal({VELLORA_COMPANION, songs, "--exchange", exchange}, 24, 100);
  const auto comes = [&](const std::string& text) {
    return terminal.waitFor([&] { return terminal.shows(text); });
  };
  ASSERT_TRUE(comes("overlay: Following Music • ")) << terminal.screen();
  EXPECT_EQ(terminal.row(0), "Au clair de la lune — Traditionnel");
  EXPECT_TRUE(comes("› "));

  terminal.type(" ");
  EXPECT_TRUE(comes("paused in “Au clair de la lune” by Traditionnel at 0:")) << terminal.screen();
  EXPECT_TRUE(comes("⏸ "));
  EXPECT_FALSE(nowPlaying()->playing);

  const double before = nowPlaying()->position;
  terminal.type("\x1bOC");
  EXPECT_TRUE(comes("playing “Au clair de la lune”")) << terminal.screen();
  EXPECT_NEAR(nowPlaying()->position, before + 5, 2);

  terminal.type("n");
  EXPECT_TRUE(comes("Der Mond ist aufgegangen — Matthias Claudius")) << terminal.screen();
  EXPECT_TRUE(comes("No lyrics of this song")) << terminal.screen();

  terminal.type("q");
  EXPECT_TRUE(terminal.waitFor([&] { return terminal.exitStatus().has_value(); }));
  EXPECT_EQ(terminal.exitStatus(), 0);
}

TEST_F(CompanionOnTheDesk, ItsTerminalViewFollowsAPlayerWithoutAnOverlay) {
  companion::Terminal terminal({VELLORA_COMPANION, songs, "--exchange", exchange}, 24, 100);
  const auto comes = [&](const std::string& text) {
    return terminal.waitFor([&] { return terminal.shows(text); });
  };
  ASSERT_TRUE(comes("Music (stand-in) itself tells what plays; no overlay runs"))
      << terminal.screen();
  EXPECT_EQ(terminal.row(0), "Au clair de la lune — Traditionnel");
  EXPECT_EQ(terminal.row(1).substr(0, 4), "▶ ") << terminal.row(1);
  EXPECT_TRUE(comes("\n› ")) << terminal.screen();
  EXPECT_FALSE(snapshot()->enabled) << "there is no window to lay captions over";

  startOverlay();
  ASSERT_TRUE(comes("overlay: Following Music • ")) << terminal.screen();
  EXPECT_TRUE(terminal.waitFor([&] { return !terminal.shows("itself tells"); }));
  EXPECT_TRUE(terminal.waitFor([&] { return snapshot() && snapshot()->enabled; }));
  terminal.type("q");
  EXPECT_TRUE(terminal.waitFor([&] { return terminal.exitStatus().has_value(); }));
}

}  // namespace
}  // namespace vellora::e2e
