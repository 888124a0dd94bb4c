#include "playback/playback.h"

#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace vellora::demo {
namespace {

using Status = Playback::Status;

class PlaybackTest : public testing::Test {
 protected:
  static std::vector<Song> songs() {
    std::vector<Song> list(3);
    for (std::size_t i = 0; i < list.size(); ++i) {
      list[i].title = std::string(1, static_cast<char>('a' + i));
      list[i].length = 60;
    }
    return list;
  }
  void SetUp() override {
    playback.listen([this](const Playback::Change& change) {
      if (change.track) log += "track ";
      if (change.status) log += "status ";
      if (change.position) log += "position ";
      if (change.rate) log += "rate ";
      if (change.volume) log += "volume ";
      log += "| ";
    });
  }
  std::string taken() { return std::exchange(log, {}); }

  double now = 1000;
  Playback playback{songs(), [this] { return now; }};
  std::string log;
};

TEST_F(PlaybackTest, BeginsPausedAtTheFirstSong) {
  now += 5;
  EXPECT_EQ(playback.status(), Status::paused);
  EXPECT_EQ(playback.song().title, "a");
  EXPECT_EQ(playback.position(), 0);
}

TEST_F(PlaybackTest, RunsByItsClockOnlyWhilePlaying) {
  playback.play();
  now += 4.5;
  EXPECT_DOUBLE_EQ(playback.position(), 4.5);
  playback.pause();
  now += 10;
  EXPECT_DOUBLE_EQ(playback.position(), 4.5);
  playback.playPause();
  now += 1;
  EXPECT_DOUBLE_EQ(playback.position(), 5.5);
  playback.playPause();
  EXPECT_EQ(playback.status(), Status::paused);
  EXPECT_EQ(taken(), "status | status | status | status | ");
}

TEST_F(PlaybackTest, SayingTheSameTwiceChangesNothing) {
  playback.play();
  taken();
  playback.play();
  EXPECT_EQ(taken(), "");
  playback.pause();
  taken();
  playback.pause();
  EXPECT_EQ(taken(), "");
}

TEST_F(PlaybackTest, StopGoesBackToTheBeginAndPauseDoesNotLeaveIt) {
  playback.play();
  now += 9;
  playback.stop();
  EXPECT_EQ(playback.position(), 0);
  playback.pause();
  EXPECT_EQ(playback.status(), Status::stopped);
  playback.playPause();
  now += 2;
  EXPECT_EQ(playback.status(), Status::playing);
  EXPECT_DOUBLE_EQ(playback.position(), 2);
}

TEST_F(PlaybackTest, NextAndPreviousKeepTheStatusAndRepeatTheLibrary) {
  playback.setPosition(30);
  playback.previous();
  EXPECT_EQ(playback.song().title, "c");
  EXPECT_EQ(playback.position(), 0);
  EXPECT_EQ(playback.status(), Status::paused);
  playback.play();
  taken();
  playback.next();
  EXPECT_EQ(playback.song().title, "a");
  EXPECT_EQ(playback.status(), Status::playing);
  EXPECT_EQ(taken(), "track | ");
}

TEST_F(PlaybackTest, GoToPlaysTheSongAndIgnoresWhatIsNone) {
  playback.goTo(2);
  EXPECT_EQ(playback.song().title, "c");
  EXPECT_EQ(playback.status(), Status::playing);
  EXPECT_EQ(taken(), "track status | ");
  playback.goTo(3);
  EXPECT_EQ(playback.song().title, "c");
  EXPECT_EQ(taken(), "");
}

TEST_F(PlaybackTest, SeekStopsAtTheBeginAndGoesOnBeyondTheEnd) {
  playback.setPosition(10);
  taken();
  playback.seek(-4);
  EXPECT_DOUBLE_EQ(playback.position(), 6);
  EXPECT_EQ(taken(), "position | ");
  playback.seek(-40);
  EXPECT_EQ(playback.position(), 0);
  playback.seek(60);
  EXPECT_EQ(playback.position(), 60) << "the very end is still inside";
  taken();
  playback.seek(0.5);
  EXPECT_EQ(playback.song().title, "b");
  EXPECT_EQ(playback.position(), 0);
  EXPECT_EQ(taken(), "track | ");
  playback.seek(std::nan(""));
  EXPECT_EQ(taken(), "");
}

TEST_F(PlaybackTest, SetPositionTakesOnlyWhatLiesInTheSong) {
  playback.setPosition(60);
  EXPECT_EQ(playback.position(), 60);
  playback.setPosition(0);
  EXPECT_EQ(playback.position(), 0);
  playback.setPosition(12);
  taken();
  for (const double outside : {-0.1, 60.1, std::nan(""), HUGE_VAL}) {
    playback.setPosition(outside);
    EXPECT_EQ(playback.position(), 12) << outside;
  }
  EXPECT_EQ(taken(), "");
}

TEST_F(PlaybackTest, RateBendsTheClockFromNowOn) {
  playback.play();
  now += 4;
  playback.setRate(2);
  EXPECT_DOUBLE_EQ(playback.position(), 4);
  now += 3;
  EXPECT_DOUBLE_EQ(playback.position(), 10);
  taken();
  playback.setRate(9);
  playback.setRate(0.1);
  playback.setRate(-1);
  EXPECT_EQ(playback.rate(), 2);
  EXPECT_EQ(taken(), "");
  playback.setRate(0);
  EXPECT_EQ(playback.rate(), 2);
  EXPECT_EQ(playback.status(), Status::paused);
}

TEST_F(PlaybackTest, VolumeIsNotBelowZero) {
  playback.setVolume(-3);
  EXPECT_EQ(playback.volume(), 0);
  EXPECT_EQ(taken(), "volume | ");
  playback.setVolume(-1);
  EXPECT_EQ(taken(), "");
}

TEST_F(PlaybackTest, GoesOnToTheNextSongWhenOneHasEnded) {
  playback.play();
  now += 59.9;
  playback.advance();
  EXPECT_EQ(playback.song().title, "a");
  now += 5;
  EXPECT_EQ(playback.position(), 60) << "never beyond the end";
  taken();
  playback.advance();
  EXPECT_EQ(playback.song().title, "b");
  EXPECT_EQ(playback.position(), 0);
  EXPECT_EQ(taken(), "track | ");
}

TEST_F(PlaybackTest, ALibraryOfOneSongBeginsItAgain) {
  std::vector<Song> one = songs();
  one.resize(1);
  Playback alone(one, [this] { return now; });
  std::string seen;
  alone.listen([&](const Playback::Change& change) { seen += change.position ? "p" : "-"; });
  alone.setPosition(60);
  alone.play();
  alone.advance();
  EXPECT_EQ(alone.position(), 0);
  EXPECT_EQ(seen, "p-p");
}

}  // namespace
}  // namespace vellora::demo
