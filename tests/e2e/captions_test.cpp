#include <algorithm>

#include <signal.h>

#include "base/files.h"
#include "e2e/desk.h"

namespace vellora::e2e {
namespace {

class CaptionsOnTheDesk : public Desk {
 protected:
  void follow(std::vector<std::string> playerOptions = {"--song", "1", "--paused", "--position",
                                                        "12"}) {
    ASSERT_NO_FATAL_FAILURE(startPlayer(std::move(playerOptions)));
    keepSnapshot(snapshotOfPlayer());
    startOverlay();
    ASSERT_TRUE(waitFor([&] { return following() && captionsRight(); })) << "no captions";
  }
  // A program of another kind in front of everything, beside the player's window.
  std::unique_ptr<Process> bringAnotherProgramToFront() {
    auto other = std::make_unique<Process>(
        std::vector<std::string>{"xmessage", "-geometry", "120x40+5+5", "another program"},
        folder / "xmessage.log");
    return other;
  }
};

TEST_F(CaptionsOnTheDesk, StandUnderTheirRows) {
  follow();
  const auto verdict = look();
  ASSERT_TRUE(verdict);
  EXPECT_GE(verdict->captions, 3U);
}

TEST_F(CaptionsOnTheDesk, FollowTheRowsAsTheyScroll) {
  ASSERT_NO_FATAL_FAILURE(follow());
  const auto before = seenPlayer();
  ASSERT_NO_FATAL_FAILURE(scrollThePlayer());
  ASSERT_TRUE(waitFor([&] {
    const auto seen = seenPlayer();
    return seen && before && seen->rows != before->rows && captionsRight();
  })) << "captions did not follow";
}

TEST_F(CaptionsOnTheDesk, AreHiddenForTheWrongSong) {
  ASSERT_NO_FATAL_FAILURE(follow());
  keepSnapshotOfAnotherSong();
  EXPECT_TRUE(waitFor([&] { return statusIs("Waiting for translations for this song"); }));
  EXPECT_TRUE(waitFor([&] { return nothingOverPlayer(); }));
}

TEST_F(CaptionsOnTheDesk, AreHiddenWhileThePlayerIsInTheBackground) {
  ASSERT_NO_FATAL_FAILURE(follow());
  auto other = bringAnotherProgramToFront();
  EXPECT_TRUE(waitFor([&] { return statusIs("Ready — bring Music to the front"); }));
  EXPECT_TRUE(waitFor([&] { return nothingOverPlayer(); }));
  other->stop();
  outputOf({"wmctrl", "-x", "-a", "com.apple.Music"});
  EXPECT_TRUE(waitFor([&] { return following() && captionsRight(); }));
}

TEST_F(CaptionsOnTheDesk, AreHiddenWhileThePlayerIsShaded) {
  ASSERT_NO_FATAL_FAILURE(follow());
  const auto before = seenPlayer();
  ASSERT_TRUE(before);
  outputOf({"wmctrl", "-x", "-r", "com.apple.Music", "-b", "add,shaded"});
  EXPECT_TRUE(waitFor([&] { return statusIs("Ready — bring Music to the front"); }));
  // Of the lyrics' place the screen shows the plain desktop.
  EXPECT_TRUE(waitFor([&] {
    const auto whole = screen->whole();
    if (!whole) return false;
    witness::Picture desktop = *whole;
    std::ranges::fill(desktop.pixels, whole->at(0, 0));
    return witness::difference(*whole, desktop, before->viewport).changed == 0;
  }));
  outputOf({"wmctrl", "-x", "-r", "com.apple.Music", "-b", "remove,shaded"});
  EXPECT_TRUE(waitFor([&] { return following() && captionsRight(); }));
}

TEST_F(CaptionsOnTheDesk, LetEveryClickThrough) {
  ASSERT_NO_FATAL_FAILURE(follow());
  keepSync();
  ASSERT_TRUE(waitFor([&] { return nowPlaying().has_value(); }));
  const auto target = putAPlateOverARow();
  ASSERT_TRUE(target) << "no plate over a row";
  const double before = nowPlaying()->position;
  outputOf({"xdotool", "mousemove", std::to_string(static_cast<int>(target->midX())),
            std::to_string(static_cast<int>(target->midY())), "click", "1"});
  EXPECT_TRUE(waitFor([&] { return nowPlaying() && nowPlaying()->position > before + 1; }))
      << "the click did not reach the row under the caption";
}

TEST_F(CaptionsOnTheDesk, NeverTakeTheKeyboard) {
  ASSERT_NO_FATAL_FAILURE(follow());
  EXPECT_NE(outputOf({"xdotool", "getactivewindow", "getwindowname"}).find("Music"),
            std::string::npos);
  EXPECT_NE(outputOf({"xdotool", "getwindowfocus", "getwindowname"}).find("Music"),
            std::string::npos);
}

TEST_F(CaptionsOnTheDesk, ComeBackWhenAHungPlayerWakes) {
  environment.erase("VELLORA_PLAYER_PATIENCE");
  ASSERT_NO_FATAL_FAILURE(follow());
  keepSync();
  ASSERT_TRUE(waitFor([&] { return nowPlaying().has_value(); }));
  player->signal(SIGSTOP);
  // A stale command is removed by the next tick, which the player does not hold up.
  for (int i = 0; i < 15; ++i) {
    send(MusicCommand(now() - 30, MusicCommand::Action::next, ""));
    ASSERT_TRUE(waitFor([&] { return !fileExists(exchange / commandFileName); })) << i;
  }
  player->signal(SIGCONT);
  EXPECT_TRUE(waitFor([&] { return following() && captionsRight(); }));
  EXPECT_TRUE(overlay->running());
}

TEST_F(CaptionsOnTheDesk, SurviveThePlayersDeath) {
  ASSERT_NO_FATAL_FAILURE(follow());
  player->signal(SIGKILL);
  EXPECT_TRUE(waitFor([&] { return statusIs("Ready — bring Music to the front"); }));
  ASSERT_NO_FATAL_FAILURE(startPlayer({"--song", "1", "--paused", "--position", "12"}));
  EXPECT_TRUE(waitFor([&] { return following() && captionsRight(); }));
}

}  // namespace
}  // namespace vellora::e2e
