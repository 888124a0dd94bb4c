#include <signal.h>

#include "wayland/wayland_desk.h"

namespace vellora::e2e {
namespace {

// What X11's desktop is asked for too, on the compositor that the session has.
class CaptionsOnWayland : public WaylandDesk {};

TEST_F(CaptionsOnWayland, StandUnderTheirRows) {
  ASSERT_NO_FATAL_FAILURE(follow(usualFrame));
  const auto verdict = look();
  ASSERT_TRUE(verdict);
  EXPECT_GE(verdict->captions, 3U);
}

TEST_F(CaptionsOnWayland, StandUnderTheRowsOfAPlayerUnderXwayland) {
  ASSERT_NO_FATAL_FAILURE(follow(usualFrame, PlayersWindow::underXwayland));
}

TEST_F(CaptionsOnWayland, FollowTheRowsAsTheyScroll) {
  ASSERT_NO_FATAL_FAILURE(follow(usualFrame));
  const auto before = seenPlayer();
  ASSERT_NO_FATAL_FAILURE(scrollThePlayer());
  ASSERT_NO_FATAL_FAILURE(rememberPlayerAnew());
  ASSERT_TRUE(waitFor([&] {
    const auto seen = seenPlayer();
    return seen && before && seen->rows != before->rows && captionsRight();
  })) << "captions did not follow";
}

TEST_F(CaptionsOnWayland, FollowAWindowThatMoves) {
  ASSERT_NO_FATAL_FAILURE(follow(usualFrame));
  const Rect other{20, 90, 1000, 700};
  compositor->place(player->pid(), other);
  ASSERT_TRUE(waitFor([&] { return compositor->contentOf(player->pid()) == other; }));
  ASSERT_NO_FATAL_FAILURE(rememberPlayerAnew());
  EXPECT_TRUE(waitFor([&] { return captionsRight(); }));
}

TEST_F(CaptionsOnWayland, AreHiddenForTheWrongSong) {
  ASSERT_NO_FATAL_FAILURE(follow(usualFrame));
  keepSnapshotOfAnotherSong();
  EXPECT_TRUE(waitFor([&] { return statusIs("Waiting for translations for this song"); }));
  EXPECT_TRUE(waitFor([&] { return nothingOverPlayer(); }));
}

TEST_F(CaptionsOnWayland, AreHiddenWhileThePlayerIsInTheBackground) {
  ASSERT_NO_FATAL_FAILURE(follow(usualFrame));
  Process other({VELLORA_DESK_WINDOW}, folder / "other.log");
  ASSERT_TRUE(waitFor([&] { return compositor->contentOf(other.pid()).has_value(); }));
  compositor->place(other.pid(), {0, 0, 130, 45});
  compositor->activate(other.pid());
  EXPECT_TRUE(waitFor([&] { return statusIs("Ready — bring Music to the front"); }));
  EXPECT_TRUE(waitFor([&] { return nothingOverPlayer(); }));
  other.stop();
  compositor->activate(player->pid());
  EXPECT_TRUE(waitFor([&] { return following() && captionsRight(); }));
}

TEST_F(CaptionsOnWayland, LetEveryClickThrough) {
  ASSERT_NO_FATAL_FAILURE(follow(usualFrame));
  keepSync();
  ASSERT_TRUE(waitFor([&] { return nowPlaying().has_value(); }));
  const auto target = putAPlateOverARow();
  ASSERT_TRUE(target) << "no plate over a row";
  const double before = nowPlaying()->position;
  const Process clicking = compositor->keepClicking({target->midX(), target->midY()});
  EXPECT_TRUE(waitFor([&] { return nowPlaying() && nowPlaying()->position > before + 1; }))
      << "the click did not reach the row under the caption";
}

TEST_F(CaptionsOnWayland, NeverTakeTheKeyboard) {
  ASSERT_NO_FATAL_FAILURE(follow(usualFrame));
  EXPECT_TRUE(compositor->isActive(player->pid()));
}

// It asks before any loop has run.
TEST_F(CaptionsOnWayland, TheDiagnosisReadsThePlayersRows) {
  ASSERT_NO_FATAL_FAILURE(follow(usualFrame));
  const auto seen = seenPlayer();
  ASSERT_TRUE(seen && seen->rows.size() > 2);
  std::string said;
  EXPECT_TRUE(waitFor([&] {
    said = outputOf({VELLORA_PROGRAM, "--diagnose"});
    return said.find(seen->rows[1].text) != std::string::npos;
  })) << said;
}

TEST_F(CaptionsOnWayland, SurviveThePlayersDeath) {
  ASSERT_NO_FATAL_FAILURE(follow(usualFrame));
  player->signal(SIGKILL);
  EXPECT_TRUE(waitFor([&] { return statusIs("Ready — bring Music to the front"); }));
  ASSERT_NO_FATAL_FAILURE(startPlayerAt(usualFrame));
  EXPECT_TRUE(waitFor([&] { return following() && captionsRight(); }));
}

class CaptionsAtAScale : public WaylandDesk, public testing::WithParamInterface<double> {};

TEST_P(CaptionsAtAScale, StandUnderTheirRows) {
  compositor->setScale(0, GetParam());
  ASSERT_NO_FATAL_FAILURE(follow({20, 20, 600, 370}));
}

INSTANTIATE_TEST_SUITE_P(Captions, CaptionsAtAScale, testing::Values(1.5, 2.0),
                         [](const auto& each) {
                           return each.param == 2.0 ? "Two" : "OneAndAHalf";
                         });

}  // namespace
}  // namespace vellora::e2e
