#include <cmath>

#include <signal.h>

#include "players/browsers.h"

namespace vellora::e2e {
namespace {

constexpr const char* noLyrics = "Open Music’s Now Playing view and show Lyrics";
constexpr const char* notInFront = "Ready — bring Music to the front";
constexpr const char* otherSong = "Waiting for translations for this song";

class FollowingABrowser : public EveryBrowser {
 protected:
  void command(MusicCommand::Action action, double position = 0) {
    send(MusicCommand(now(), action, "", "", position));
  }
  bool nowPlays(std::size_t number) const {
    const auto track = nowPlaying();
    return track && track->title == song(number).title && track->artist == song(number).artist &&
           track->album == song(number).album;
  }
  // By the wheel, with the mouse over the lyrics.
  void scrollDown(const witness::SeenPlayer& seen) const {
    outputOf({"xdotool", "mousemove", std::to_string(static_cast<int>(seen.viewport.midX())),
              std::to_string(static_cast<int>(seen.viewport.midY())), "click", "5"});
    outputOf({"xdotool", "mousemove", "32000", "32000"});
  }
};

TEST_P(FollowingABrowser, TheSongAndWhatIsDoneWithIt) {
  ASSERT_NO_FATAL_FAILURE(follow("labelled.html"));
  EXPECT_TRUE(waitFor([&] { return nowPlays(1); })) << "the song was not published";

  command(MusicCommand::Action::seek, 30);
  EXPECT_TRUE(waitFor([&] { return nowPlaying()->position >= 29.9; })) << "no seek";
  command(MusicCommand::Action::playPause);
  EXPECT_TRUE(waitFor([&] { return nowPlaying()->playing; })) << "not playing";
  command(MusicCommand::Action::playPause);
  EXPECT_TRUE(waitFor([&] { return !nowPlaying()->playing; })) << "not paused";
  EXPECT_TRUE(waitFor([&] { return captionsRight(); }));

  // By the player's own control, and then because the song is over.
  command(MusicCommand::Action::next);
  EXPECT_TRUE(waitFor([&] { return nowPlays(2); })) << "no next song";
  EXPECT_TRUE(waitFor([&] { return statusIs(otherSong) && nothingOverPlayer(); }));
  command(MusicCommand::Action::seek, song(2).length - 1);
  EXPECT_TRUE(waitFor([&] { return nowPlays(3); })) << "no song after the second";
  command(MusicCommand::Action::playPause);
  EXPECT_TRUE(waitFor([&] { return !nowPlaying()->playing; })) << "not paused";
  keepSnapshot(snapshotOf(3));
  EXPECT_TRUE(waitFor([&] { return following() && captionsRight(); }));
}

TEST_P(FollowingABrowser, TheRowsWhereverTheyGo) {
  ASSERT_NO_FATAL_FAILURE(follow("labelled.html"));
  const auto before = seenPlayer();
  ASSERT_TRUE(before);
  scrollDown(*before);
  EXPECT_TRUE(waitFor(
      [&] {
        const auto seen = seenPlayer();
        return seen && seen->rows != before->rows && captionsRight();
      },
      30))
      << "captions did not follow the wheel";

  const double left = before->window.minX() < 200 ? 300 : 20;
  outputOf({"wmctrl", "-x", "-r", windowClass(), "-e",
            "0," + std::to_string(static_cast<int>(left)) + ",90,-1,-1"});
  EXPECT_TRUE(waitFor(
      [&] {
        const auto seen = seenPlayer();
        return seen && std::abs(seen->window.minX() - left) < 30 && captionsRight();
      },
      30))
      << "captions did not follow the window";
}

TEST_P(FollowingABrowser, OnlyWhileItIsInFront) {
  ASSERT_NO_FATAL_FAILURE(follow("labelled.html"));
  {
    const Process other({"xmessage", "-geometry", "120x40+5+5", "another program"},
                        folder / "xmessage.log");
    EXPECT_TRUE(waitFor([&] { return statusIs(notInFront) && nothingOverPlayer(); }));
  }
  bringToFront();
  EXPECT_TRUE(waitFor([&] { return following() && captionsRight(); }));

  player->signal(SIGKILL);
  EXPECT_TRUE(waitFor([&] { return statusIs(notInFront); }));
  EXPECT_TRUE(overlay->running());

  ASSERT_NO_FATAL_FAILURE(open({"labelled.html?song=1&at=11.1&paused"}));
  EXPECT_TRUE(waitFor([&] { return following() && captionsRight(); })) << whatIsSeen();
}

TEST_P(FollowingABrowser, AtTwiceTheScale) {
  environment["GDK_SCALE"] = "2";
  if (browser().program == "chromium") unitsPerPoint = 2;  // pixels; Firefox has points
  ASSERT_NO_FATAL_FAILURE(follow("labelled.html"));
  EXPECT_GE(look()->captions, 1U);
}

TEST_P(FollowingABrowser, NoPageThatPlaysNothing) {
  ASSERT_NO_FATAL_FAILURE(open({"plain.html"}));
  keepSync();
  keepSnapshot(snapshotOf(1));
  startOverlay();
  ASSERT_TRUE(waitFor([&] { return statusIs(noLyrics); }));
  EXPECT_FALSE(waitFor([&] { return !statusIs(noLyrics); }, 4)) << "it says: " << status()->message;
  EXPECT_TRUE(nothingOverWindow());
  EXPECT_FALSE(nowPlaying());
}

INSTANTIATE_TEST_SUITE_P(All, FollowingABrowser, testing::Values(chromiumApplication, firefox),
                         [](const auto& test) { return test.param.name; });

class FollowingATab : public EveryBrowser {};

TEST_P(FollowingATab, OnlyWhileItIsShown) {
  ASSERT_NO_FATAL_FAILURE(open({"labelled.html?song=1&at=11.1&paused", "other.html"}));
  keepSync();
  keepSnapshot(snapshotOf(1));
  startOverlay();
  ASSERT_TRUE(waitFor([&] { return following(); })) << "no captions";
  EXPECT_TRUE(waitFor([&] { return captionsRight(); })) << "not under the rows";
  bringToFront();
  outputOf({"xdotool", "key", "ctrl+Tab"});
  EXPECT_TRUE(waitFor([&] { return statusIs(noLyrics) && nothingOverWindow(); }));
  outputOf({"xdotool", "key", "ctrl+Tab"});
  EXPECT_TRUE(waitFor([&] { return following() && captionsRight(); }));
}

INSTANTIATE_TEST_SUITE_P(All, FollowingATab, testing::Values(chromium, firefox),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace vellora::e2e
