#include "music/now_playing_reader.h"

#include <cmath>
#include <limits>
#include <optional>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "music/now_playing_script.h"
#include "music/script_lines.h"
#include "support/fake_clock.h"
#include "support/fake_music_scripting.h"

namespace vellora {
namespace {

class NowPlayingReaderTest : public testing::Test {
 protected:
  std::optional<NowPlayingTrack> read(const std::string& reply) {
    scripting.standing = FakeMusicScripting::reply(reply);
    return readNowPlayingTrack(scripting, clock, output);
  }

  FakeClock clock;
  FakeMusicScripting scripting;
  std::ostringstream output;
};

TEST_F(NowPlayingReaderTest, ScriptIsTheAgreedTextByteForByte) {
  EXPECT_EQ(nowPlayingScript, script_lines::joined(script_lines::nowPlaying));
  EXPECT_EQ(nowPlayingScript.size(), 494U);
}

TEST_F(NowPlayingReaderTest, ScriptIsAskedWithoutACommand) {
  read("");
  ASSERT_EQ(scripting.requests.size(), 1U);
  EXPECT_EQ(scripting.requests[0].source, nowPlayingScript);
  EXPECT_FALSE(scripting.requests[0].command);
}

TEST_F(NowPlayingReaderTest, FiveFieldsMakeATrack) {
  const auto track = read("Song|Singer|Record|123457|playing");
  ASSERT_TRUE(track);
  EXPECT_TRUE(*track == NowPlayingTrack(clock.now(), "Song", "Singer", "Record", 123.457, true));
  EXPECT_EQ(output.str(), "");
}

TEST_F(NowPlayingReaderTest, EmptyReplyIsNoTrackAndPrintsNothing) {
  EXPECT_FALSE(read(""));
  EXPECT_EQ(output.str(), "");
}

TEST_F(NowPlayingReaderTest, OneFieldIsNoTrack) { EXPECT_FALSE(read("Song")); }

TEST_F(NowPlayingReaderTest, TwoFieldsAreEnough) {
  const auto track = read("Song|Singer");
  ASSERT_TRUE(track);
  EXPECT_TRUE(*track == NowPlayingTrack(clock.now(), "Song", "Singer", "", 0, false));
}

TEST_F(NowPlayingReaderTest, EmptyFieldsAreKeptAndNothingIsTrimmed) {
  const auto track = read(" Song |||750|playing");
  ASSERT_TRUE(track);
  EXPECT_EQ(track->title, " Song ");
  EXPECT_EQ(track->artist, "");
  EXPECT_EQ(track->album, "");
  EXPECT_EQ(track->position, 0.75);
}

TEST_F(NowPlayingReaderTest, TrackWithoutANameIsNoTrack) {
  EXPECT_FALSE(read("|Singer|Record|750|playing"));
}

TEST_F(NowPlayingReaderTest, PositionIsInThousandths) {
  EXPECT_EQ(read("s|a|b|750|paused")->position, 0.75);
  EXPECT_EQ(read("s|a|b|12.5|paused")->position, 0.0125);
}

TEST_F(NowPlayingReaderTest, PositionThatIsNoNumberIsZero) {
  for (const char* field : {"", " ", "abc", "1,5", " 750", "750 ", "missing value"}) {
    EXPECT_EQ(read("s|a|b|" + std::string(field) + "|playing")->position, 0) << field;
  }
}

TEST_F(NowPlayingReaderTest, PositionMayBeInfiniteOrNotANumber) {
  EXPECT_EQ(read("s|a|b|1e400|playing")->position, std::numeric_limits<double>::infinity());
  EXPECT_TRUE(std::isnan(read("s|a|b|nan|playing")->position));
}

TEST_F(NowPlayingReaderTest, OnlyTheExactWordMeansPlaying) {
  EXPECT_TRUE(read("s|a|b|1|playing")->playing);
  for (const char* state : {"paused", "Playing", "playing ", "", "fast forwarding"}) {
    EXPECT_FALSE(read("s|a|b|1|" + std::string(state))->playing) << state;
  }
  EXPECT_FALSE(read("s|a|b|1")->playing);
}

TEST_F(NowPlayingReaderTest, FieldsAfterTheFifthAreIgnored) {
  const auto track = read("s|a|b|1000|playing|paused|x");
  ASSERT_TRUE(track);
  EXPECT_TRUE(*track == NowPlayingTrack(clock.now(), "s", "a", "b", 1, true));
}

TEST_F(NowPlayingReaderTest, BarInANameShiftsTheFields) {
  const auto track = read("A|B|Singer|Record|1000|playing");
  ASSERT_TRUE(track);
  EXPECT_EQ(track->title, "A");
  EXPECT_EQ(track->artist, "B");
  EXPECT_EQ(track->album, "Singer");
  EXPECT_EQ(track->position, 0);
  EXPECT_FALSE(track->playing);
}

TEST_F(NowPlayingReaderTest, TimeIsTakenAfterTheReply) {
  scripting.onRun = [this](const ScriptRequest&) { clock.advance(0.2); };
  const double before = clock.now();
  EXPECT_EQ(read("s|a")->updatedAt, before + 0.2);
}

TEST_F(NowPlayingReaderTest, ScriptThatCannotBeMadeIsSilent) {
  scripting.standing = {false, "s|a", "reason"};
  EXPECT_FALSE(readNowPlayingTrack(scripting, clock, output));
  EXPECT_EQ(output.str(), "");
}

TEST_F(NowPlayingReaderTest, ErrorIsPrintedOnOneLine) {
  scripting.standing = {true, std::nullopt, "{ code = -1743; }"};
  EXPECT_FALSE(readNowPlayingTrack(scripting, clock, output));
  EXPECT_EQ(output.str(), "Music script error: { code = -1743; }\n");
}

TEST_F(NowPlayingReaderTest, UsableReplyBesideAnErrorCountsAllTheSame) {
  scripting.standing = {true, "s|a", "reason"};
  EXPECT_TRUE(readNowPlayingTrack(scripting, clock, output));
  EXPECT_EQ(output.str(), "Music script error: reason\n");
}

TEST_F(NowPlayingReaderTest, NothingIsAskedTwice) {
  scripting.standing = {true, std::nullopt, "reason"};
  readNowPlayingTrack(scripting, clock, output);
  EXPECT_EQ(scripting.requests.size(), 1U);
}

}  // namespace
}  // namespace vellora
