#include "library/lrc.h"

#include <gtest/gtest.h>

namespace vellora::demo {
namespace {

const std::vector<std::string> tags{"ti", "la"};

LrcFile read(std::string_view text) {
  auto result = parseLrc("a.lrc", text, tags);
  if (const auto* error = std::get_if<SongError>(&result)) ADD_FAILURE() << error->text();
  return std::holds_alternative<LrcFile>(result) ? std::get<LrcFile>(result) : LrcFile();
}

TEST(Lrc, TagsAndLinesAreTakenWithTheirNumbers) {
  const LrcFile file =
      read("[ti: A song ]\r\n[la:fr]\n\n# a remark\n[00:01.50] Bonsoir \n[01:02.03]♪");
  EXPECT_EQ(file.tags, (std::map<std::string, std::string>{{"ti", "A song"}, {"la", "fr"}}));
  ASSERT_EQ(file.lines.size(), 2U);
  EXPECT_EQ(file.lines[0].centiseconds, 150);
  EXPECT_EQ(file.lines[0].text, "Bonsoir");
  EXPECT_EQ(file.lines[0].number, 5);
  EXPECT_EQ(file.lines[1].centiseconds, 6203);
  EXPECT_EQ(file.lines[1].text, "♪");
}

TEST(Lrc, StampsAreMinutesSecondsAndHundredths) {
  EXPECT_EQ(parseStamp("00:00"), 0);
  EXPECT_EQ(parseStamp("01:05"), 6500);
  EXPECT_EQ(parseStamp("10:59.99"), 65999);
  for (const char* wrong :
       {"", "1:05", "01:60", "01:05.5", "01:05:50", "0a:00", "01.05", "-1:05"}) {
    EXPECT_EQ(parseStamp(wrong), -1) << wrong;
  }
}

struct Mistake {
  const char* text;
  int line;
  const char* message;
};

class LrcMistakes : public testing::TestWithParam<Mistake> {};

TEST_P(LrcMistakes, AreNamedWithTheirLine) {
  const auto result = parseLrc("a.lrc", GetParam().text, tags);
  ASSERT_TRUE(std::holds_alternative<SongError>(result));
  const auto& error = std::get<SongError>(result);
  EXPECT_EQ(error.file, "a.lrc");
  EXPECT_EQ(error.line, GetParam().line);
  EXPECT_EQ(error.message, GetParam().message);
}

INSTANTIATE_TEST_SUITE_P(
    Each, LrcMistakes,
    testing::Values(
        Mistake{"[ti:A]\nhello", 2, "neither a tag nor a line with a time stamp"},
        Mistake{"[ti:A", 1, "\"[\" without \"]\""}, Mistake{"[ti]", 1, "a tag without \":\""},
        Mistake{"[xx:A]", 1, "unknown tag \"xx\""}, Mistake{"[ti: ]", 1, "tag \"ti\" is empty"},
        Mistake{"[ti:A] B", 1, "text after tag \"ti\""},
        Mistake{"[ti:A]\n[ti:B]", 2, "tag \"ti\" occurs twice"},
        Mistake{"[00:01.00]a\n[ti:A]", 2, "tag \"ti\" after the first line"},
        Mistake{"[00:01]a", 1, "the time stamp is not of the form mm:ss.cc"},
        Mistake{"[00:61.00]a", 1, "the time stamp is not of the form mm:ss.cc"},
        Mistake{"[00:01.00]  ", 1, "a time stamp without text"},
        Mistake{"[00:01.00][00:02.00]a", 1, "more than one time stamp in a line"},
        Mistake{"[00:01.00]a\n[00:01.00]b", 2, "the time stamp is not later than the one before"},
        Mistake{"[00:01.00]\xC3(", 1, "not UTF-8"}));

TEST(SongErrors, NameFileAndLine) {
  EXPECT_EQ((SongError{"x/lyrics.lrc", 7, "wrong"}.text()), "x/lyrics.lrc:7: wrong");
  EXPECT_EQ((SongError{"x/lyrics.lrc", 0, "wrong"}.text()), "x/lyrics.lrc: wrong");
}

}  // namespace
}  // namespace vellora::demo
