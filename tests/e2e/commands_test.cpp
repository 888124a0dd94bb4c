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

  // Sends right after a publication, and says whether the next one came in the same tick, sooner
  // than the half second that otherwise lies between two.
  void sendAndExpectPublication(MusicCommand command) {
    const double before = nowPlaying()->updatedAt;
    ASSERT_TRUE(waitFor([&] { return nowPlaying() && nowPlaying()->updatedAt > before; }, 3));
    const double published = nowPlaying()->updatedAt;
    command.requestedAt = now();
    send(command);
    ASSERT_TRUE(waitFor([&] { return nowPlaying() && nowPlaying()->updatedAt > published; }, 3));
    EXPECT_LT(nowPlaying()->updatedAt - published, 0.45)
        << "seconds between two publications with a command between them";
    EXPECT_FALSE(fileExists(exchange / commandFileName));
  }
  bool log(const std::string& line) const {
    std::ifstream file(folder / "overlay.log");
    for (std::string read; std::getline(file, read);) {
      if (read == line) return true;
    }
    return false;
  }
};

TEST_F(CommandsOnTheDesk, PlayPauseReachesThePlayer) {
  ASSERT_TRUE(nowPlaying()->playing);
  sendAndExpectPublication({0, MusicCommand::Action::playPause, ""});
  EXPECT_FALSE(nowPlaying()->playing);
  EXPECT_TRUE(waitFor([&] { return log("playPause : toggled"); }));
}

TEST_F(CommandsOnTheDesk, SeekReachesThePlayer) {
  sendAndExpectPublication({0, MusicCommand::Action::seek, "", "", 20.5});
  EXPECT_NEAR(nowPlaying()->position, 20.5, 0.5);
  EXPECT_TRUE(nowPlaying()->playing);
  EXPECT_TRUE(waitFor([&] { return log("seek : seeked"); }));
}

TEST_F(CommandsOnTheDesk, NextAndPreviousReachThePlayer) {
  const std::string first = nowPlaying()->title;
  sendAndExpectPublication({0, MusicCommand::Action::next, ""});
  EXPECT_TRUE(waitFor([&] { return nowPlaying()->title != first; }, 2));
  EXPECT_TRUE(waitFor([&] { return log("next : next"); }));
  sendAndExpectPublication({0, MusicCommand::Action::previous, ""});
  EXPECT_TRUE(waitFor([&] { return nowPlaying()->title == first; }, 2));
  EXPECT_TRUE(waitFor([&] { return log("previous : previous"); }));
}

TEST_F(CommandsOnTheDesk, PlayFindsATrackOfTheLibraryWithoutRegardToLetterCase) {
  const std::string first = nowPlaying()->title;
  sendAndExpectPublication({0, MusicCommand::Action::next, ""});
  ASSERT_TRUE(waitFor([&] { return nowPlaying()->title != first; }, 2));
  std::string shouted = first;
  for (char& c : shouted) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  sendAndExpectPublication({0, MusicCommand::Action::play, shouted, nowPlaying()->artist, 9});
  EXPECT_TRUE(waitFor([&] { return nowPlaying()->title == first; }, 2));
  EXPECT_NEAR(nowPlaying()->position, 9, 1.5);
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
