#include <cmath>
#include <fstream>

#include "base/files.h"
#include "e2e/desk.h"

namespace vellora::e2e {
namespace {

class CommandsOnTheDesk : public Desk {
 protected:
  void SetUp() override {
    Desk::SetUp();
    ASSERT_NO_FATAL_FAILURE(startPlayer({"--song", "4", "--position", "5"}));
    keepSync();
    startOverlay();
    ASSERT_TRUE(waitFor([&] { return nowPlaying().has_value(); })) << "nothing is published";
  }

  // Sends, and returns when what plays has been published after the command was taken in.
  void sendAndExpectPublication(MusicCommand command) {
    command.requestedAt = sent = now();
    send(command);
    ASSERT_TRUE(waitFor([&] { return !fileExists(exchange / commandFileName); }));
    const double taken = now();
    ASSERT_TRUE(waitFor([&] { return nowPlaying() && nowPlaying()->updatedAt > taken; }));
  }
  // Where a player that was sent to this position while it plays has got to since, at most.
  void expectPositionFrom(double position) const {
    const auto track = nowPlaying();
    EXPECT_GE(track->position, position - 0.01);
    EXPECT_LE(track->position, position + track->updatedAt - sent + 0.5);
  }
  bool log(const std::string& line) const {
    std::ifstream file(folder / "overlay.log");
    for (std::string read; std::getline(file, read);) {
      if (read == line) return true;
    }
    return false;
  }

  double sent = 0;  // seconds since 1970
};

TEST_F(CommandsOnTheDesk, PlayPauseReachesThePlayer) {
  ASSERT_TRUE(nowPlaying()->playing);
  sendAndExpectPublication({0, MusicCommand::Action::playPause, ""});
  EXPECT_FALSE(nowPlaying()->playing);
  EXPECT_TRUE(waitFor([&] { return log("playPause : toggled"); }));
}

TEST_F(CommandsOnTheDesk, SeekReachesThePlayer) {
  sendAndExpectPublication({0, MusicCommand::Action::seek, "", "", 20.5});
  expectPositionFrom(20.5);
  EXPECT_TRUE(nowPlaying()->playing);
  EXPECT_TRUE(waitFor([&] { return log("seek : seeked"); }));
}

TEST_F(CommandsOnTheDesk, NextAndPreviousReachThePlayer) {
  const std::string first = nowPlaying()->title;
  sendAndExpectPublication({0, MusicCommand::Action::next, ""});
  EXPECT_TRUE(waitFor([&] { return nowPlaying()->title != first; }));
  EXPECT_TRUE(waitFor([&] { return log("next : next"); }));
  sendAndExpectPublication({0, MusicCommand::Action::previous, ""});
  EXPECT_TRUE(waitFor([&] { return nowPlaying()->title == first; }));
  EXPECT_TRUE(waitFor([&] { return log("previous : previous"); }));
}

TEST_F(CommandsOnTheDesk, PlayFindsATrackOfTheLibraryWithoutRegardToLetterCase) {
  const std::string first = nowPlaying()->title;
  sendAndExpectPublication({0, MusicCommand::Action::next, ""});
  ASSERT_TRUE(waitFor([&] { return nowPlaying()->title != first; }));
  std::string shouted = first;
  for (char& c : shouted) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  sendAndExpectPublication({0, MusicCommand::Action::play, shouted, nowPlaying()->artist, 9});
  EXPECT_TRUE(waitFor([&] { return nowPlaying()->title == first; }));
  expectPositionFrom(9);
  EXPECT_TRUE(waitFor([&] { return log("play " + shouted + ": playing"); }));
}

TEST_F(CommandsOnTheDesk, PlayOfAnUnknownTrackIsSearchedFor) {
  sendAndExpectPublication({0, MusicCommand::Action::play, "No such song", "Nobody"});
  EXPECT_TRUE(waitFor([&] { return log("play No such song: searched"); }));
}

TEST_F(CommandsOnTheDesk, AMalformedCommandStays) {
  // Written in its place: what is renamed into it must satisfy the schema.
  std::ofstream(exchange / commandFileName) << "{\"action\":\"next\"}";
  const double before = nowPlaying()->updatedAt;
  ASSERT_TRUE(waitFor([&] { return nowPlaying()->updatedAt > before + 1; }));
  EXPECT_TRUE(fileExists(exchange / commandFileName));
}

}  // namespace
}  // namespace vellora::e2e
