#include "music/command_script.h"

#include <cstdint>
#include <limits>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "music/script_lines.h"

namespace vellora {
namespace {

using Action = MusicCommand::Action;
using script_lines::Lines;

std::string replaced(std::string text, const std::string& word, const std::string& value) {
  for (std::size_t at = text.find(word); at != std::string::npos;
       at = text.find(word, at + value.size())) {
    text.replace(at, word.size(), value);
  }
  return text;
}

// The agreed lines for a song "Song" by "Singer" at 1500 ms.
std::string agreed(const Lines& action) {
  std::string text =
      script_lines::joined(script_lines::findTrack) + "\n\n" + script_lines::joined(action);
  text = replaced(text, "[TITLE]", "\"Song\"");
  text = replaced(text, "[ARTIST]", "\"Singer\"");
  text = replaced(text, "[MS]", "1500");
  return replaced(text, "[LOCATION]", "music://music.apple.com/search?term=Singer%20Song");
}

std::string script(Action action) {
  return commandScript(MusicCommand(0, action, "Song", "Singer", 99), 1500);
}

TEST(CommandScriptTest, EveryScriptIsTheAgreedTextByteForByte) {
  EXPECT_EQ(script(Action::play), agreed(script_lines::play));
  EXPECT_EQ(script(Action::seek), agreed(script_lines::seek));
  EXPECT_EQ(script(Action::playPause), agreed(script_lines::playPause));
  EXPECT_EQ(script(Action::previous), agreed(script_lines::previous));
  EXPECT_EQ(script(Action::next), agreed(script_lines::next));
}

TEST(CommandScriptTest, HandlerStandsBeforeEveryActionThoughOnlyPlayCallsIt) {
  for (const Action action :
       {Action::play, Action::seek, Action::playPause, Action::previous, Action::next}) {
    EXPECT_TRUE(script(action).starts_with("on findTrack()\n"));
    EXPECT_NE(script(action).find("\nend findTrack\n\n"), std::string::npos);
    EXPECT_EQ(script(action).find("to findTrack()") != std::string::npos, action == Action::play);
  }
}

TEST(CommandScriptTest, OnlyDoubleQuotesAreEscaped) {
  EXPECT_EQ(quotedForScript(R"(Say "Hi")"), R"("Say \"Hi\"")");
  EXPECT_EQ(quotedForScript(R"(a\b)"), R"("a\b")");
  EXPECT_EQ(quotedForScript(R"(a\)"), R"("a\")");
  EXPECT_EQ(quotedForScript(R"(\")"), R"("\\"")");
  EXPECT_EQ(quotedForScript(""), R"("")");
  EXPECT_EQ(quotedForScript("a\nb’—"), "\"a\nb’—\"");
}

TEST(CommandScriptTest, QuotesAndBackslashesStandInTheScript) {
  const std::string quotes = commandScript(MusicCommand(0, Action::play, R"(Say "Hi")", "x"), 0);
  EXPECT_NE(quotes.find(R"(whose name is "Say \"Hi\"" and artist is "x")"), std::string::npos);
  const std::string backslash = commandScript(MusicCommand(0, Action::play, R"(AC\DC)", "x"), 0);
  EXPECT_NE(backslash.find(R"(whose name is "AC\DC" and)"), std::string::npos);
}

TEST(CommandScriptTest, WhatIsFilledInIsNotFilledInAgain) {
  const std::string text =
      commandScript(MusicCommand(0, Action::play, "[ARTIST]", "[MS] [TITLE]"), 7);
  EXPECT_NE(text.find("whose name is \"[ARTIST]\" and artist is \"[MS] [TITLE]\")"),
            std::string::npos);
}

TEST(CommandScriptTest, SearchTermIsArtistSpaceTitlePercentEncoded) {
  const auto location = [](const std::string& title, const std::string& artist) {
    return catalogueSearchLocation(MusicCommand(0, Action::play, title, artist));
  };
  const std::string search = "music://music.apple.com/search?term=";
  EXPECT_EQ(location("A & B", "C/D?"), search + "C/D?%20A%20&%20B");
  EXPECT_EQ(location("", ""), search + "%20");
  EXPECT_EQ(location("\u00E9\"#%", "+"), search + "+%20%C3%A9%22%23%25");
  const std::string text = commandScript(MusicCommand(0, Action::play, "A & B", "C"), 0);
  EXPECT_NE(text.find("    open location \"" + search + "C%20A%20&%20B\"\n    return \"searched\""),
            std::string::npos);
}

TEST(CommandScriptTest, MillisecondsAreRoundedHalvesAwayFromZero) {
  EXPECT_EQ(wholeMilliseconds(12.3456), 12346);
  EXPECT_EQ(wholeMilliseconds(90.5), 90500);
  EXPECT_EQ(wholeMilliseconds(0.0005), 1);
  EXPECT_EQ(wholeMilliseconds(0.0025), 3);
  EXPECT_EQ(wholeMilliseconds(-0.0005), -1);
  EXPECT_EQ(wholeMilliseconds(-3.2), -3200);
  EXPECT_EQ(wholeMilliseconds(-0.0), 0);
}

TEST(CommandScriptTest, PositionBeyondSixtyFourBitsHasNoMilliseconds) {
  for (const double position :
       {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity(),
        -std::numeric_limits<double>::infinity(), 1e306, 9.3e15, -9.3e15}) {
    EXPECT_EQ(wholeMilliseconds(position), std::nullopt) << position;
  }
  EXPECT_EQ(wholeMilliseconds(-9223372036854775.808), std::numeric_limits<std::int64_t>::min());
}

TEST(CommandScriptTest, PositionsTravelAsMilliseconds) {
  const std::string play = commandScript(MusicCommand(0, Action::play, "T"), 12346);
  EXPECT_NE(play.find("    if 12346 > 0 then set player position to (12346 / 1000)\n"),
            std::string::npos);
  const std::string still = commandScript(MusicCommand(0, Action::play, "T"), 0);
  EXPECT_NE(still.find("    if 0 > 0 then set player position to (0 / 1000)\n"), std::string::npos);
  const std::string before = commandScript(MusicCommand(0, Action::play, "T"), -1200);
  EXPECT_NE(before.find("    if -1200 > 0 then set player position to (-1200 / 1000)\n"),
            std::string::npos);
  const std::string seek = commandScript(MusicCommand(0, Action::seek, "T"), 90500);
  EXPECT_NE(seek.find("    set player position to (90500 / 1000)\n    play\n"), std::string::npos);
}

TEST(CommandScriptTest, PositionsAreNotGrouped) {
  const std::string seek = commandScript(MusicCommand(0, Action::seek, "T"), 1'234'567'890);
  EXPECT_NE(seek.find("(1234567890 / 1000)"), std::string::npos);
}

}  // namespace
}  // namespace vellora
