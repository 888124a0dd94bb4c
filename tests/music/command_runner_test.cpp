#include "music/command_runner.h"

#include <limits>
#include <optional>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "music/command_script.h"
#include "support/fake_music_scripting.h"

namespace vellora {
namespace {

using Action = MusicCommand::Action;

class CommandRunnerTest : public testing::Test {
 protected:
  std::string printed(const MusicCommand& command, const ScriptOutcome& outcome) {
    scripting.standing = outcome;
    std::ostringstream output;
    runInMusic(command, scripting, output);
    return output.str();
  }

  FakeMusicScripting scripting;
};

TEST_F(CommandRunnerTest, ReplyIsPrintedAfterActionAndTitle) {
  EXPECT_EQ(printed(MusicCommand(0, Action::next, ""), FakeMusicScripting::reply("next")),
            "next : next\n");
  EXPECT_EQ(
      printed(MusicCommand(0, Action::play, R"(Say "Hi"\)"), FakeMusicScripting::reply("searched")),
      "play Say \"Hi\"\\: searched\n");
  EXPECT_EQ(printed(MusicCommand(0, Action::playPause, "T"), FakeMusicScripting::reply("toggled")),
            "playPause T: toggled\n");
}

TEST_F(CommandRunnerTest, ScriptThatCannotBeMadeFails) {
  EXPECT_EQ(printed(MusicCommand(0, Action::seek, "T"), {false, std::nullopt, std::nullopt}),
            "seek T: failed\n");
  EXPECT_EQ(printed(MusicCommand(0, Action::seek, "T"), {false, "seeked", "reason"}),
            "seek T: failed\n");
}

TEST_F(CommandRunnerTest, ScriptWithoutAReplyFailsAndItsErrorIsASecondLine) {
  EXPECT_EQ(printed(MusicCommand(0, Action::previous, "T"), {true, std::nullopt, "{ denied }"}),
            "previous T: failed\nMusic command error: { denied }\n");
  EXPECT_EQ(printed(MusicCommand(0, Action::previous, "T"), {true, std::nullopt, std::nullopt}),
            "previous T: failed\n");
}

TEST_F(CommandRunnerTest, ReplyAndErrorMayComeTogether) {
  EXPECT_EQ(printed(MusicCommand(0, Action::play, "T"), {true, "playing", "reason"}),
            "play T: playing\nMusic command error: reason\n");
}

TEST_F(CommandRunnerTest, RequestCarriesTheScriptAndItsMeaning) {
  const MusicCommand command(7, Action::seek, "Song", "Singer", 90.5);
  printed(command, FakeMusicScripting::reply("seeked"));
  ASSERT_EQ(scripting.requests.size(), 1U);
  const ScriptRequest& request = scripting.requests[0];
  EXPECT_EQ(request.source, commandScript(command, 90500));
  ASSERT_TRUE(request.command);
  EXPECT_TRUE(request.command->command == command);
  EXPECT_EQ(request.command->milliseconds, 90500);
  EXPECT_EQ(request.command->searchLocation, "music://music.apple.com/search?term=Singer%20Song");
}

TEST_F(CommandRunnerTest, NextAndPreviousCarryTheHandlerAndTheConvertedPosition) {
  for (const Action action : {Action::next, Action::previous}) {
    printed(MusicCommand(0, action, "T", "A", 12.3456), FakeMusicScripting::reply("next"));
    EXPECT_TRUE(scripting.requests.back().source.starts_with("on findTrack()\n"));
    EXPECT_EQ(scripting.requests.back().command->milliseconds, 12346);
  }
}

using CommandRunnerDeathTest = CommandRunnerTest;

TEST_F(CommandRunnerDeathTest, PositionOutOfRangeEndsTheProcessWhateverTheAction) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  std::ostringstream output;
  for (const Action action :
       {Action::play, Action::seek, Action::playPause, Action::previous, Action::next}) {
    EXPECT_DEATH(runInMusic(MusicCommand(0, action, "T", "", 1e300), scripting, output),
                 "Fatal error: the position 1e\\+300 has no whole number of milliseconds");
  }
  EXPECT_DEATH(
      runInMusic(MusicCommand(0, Action::next, "T", "", std::numeric_limits<double>::quiet_NaN()),
                 scripting, output),
      "Fatal error: the position nan");
  EXPECT_TRUE(scripting.requests.empty());
}

}  // namespace
}  // namespace vellora
