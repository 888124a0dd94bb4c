#include "companion/song/lrc.h"

#include <gtest/gtest.h>

#include "companion/lines_text.h"

namespace vellora::companion {
namespace {

struct LrcCase {
  const char* what;
  std::string_view text;
  const char* lines;  // hundredths and text
  std::size_t problems;
};

class LrcForms : public testing::TestWithParam<LrcCase> {};

TEST_P(LrcForms, AreRead) {
  const LyricFile file = readLrc("a.lrc", GetParam().text);
  EXPECT_EQ(textOf(file), GetParam().lines) << GetParam().what;
  EXPECT_EQ(file.problems.size(), GetParam().problems)
      << (file.problems.empty() ? "" : file.problems.front().text());
}

INSTANTIATE_TEST_SUITE_P(
    Good, LrcForms,
    testing::Values(
        LrcCase{"simple", "[00:01.00]a\n[00:02.50]b\n", "100 a|250 b", 0},
        LrcCase{"carriage returns", "[00:01.00]a\r\n[00:02.00]b\r[00:03.00]c", "100 a|200 b|300 c",
                0},
        LrcCase{"blanks around", "  [00:01.00]  a  \n\n\n", "100 a", 0},
        LrcCase{"short stamps", "[0:1]a\n[1:02.5]b", "100 a|6250 b", 0},
        LrcCase{"thousandths", "[00:01.234]a", "123 a", 0},
        LrcCase{"colon before hundredths", "[00:01:50]a", "150 a", 0},
        LrcCase{"hours", "[01:00:01.00]a", "360100 a", 0},
        LrcCase{"several stamps", "[00:05.00][00:01.00] [00:03.00]a\n[00:02.00]b",
                "100 a|200 b|300 a|500 a", 0},
        LrcCase{"unsorted", "[00:02.00]b\n[00:01.00]a", "100 a|200 b", 0},
        LrcCase{"same time keeps order", "[00:01.00]z\n[00:01.00]a", "100 z|100 a", 0},
        LrcCase{"pause", "[00:01.00]a\n[00:02.00]\n[00:03.00]b", "100 a|200 |300 b", 0},
        LrcCase{"positive offset comes sooner", "[offset:+500]\n[00:02.00]a", "150 a", 0},
        LrcCase{"negative offset comes later", "[offset:-250]\n[00:02.00]a", "225 a", 0},
        LrcCase{"offset at the end", "[00:02.00]a\n[offset:1000]", "100 a", 0},
        LrcCase{"offset stops at the begin", "[offset:5000]\n[00:02.00]a", "0 a", 0},
        LrcCase{"word stamps", "[00:01.00]<00:01.00>Hel<00:01.20>lo <00:01.50>you<00:02.00>",
                "100 Hello you", 0},
        LrcCase{"word stamps in brackets", "[00:01.00]Hel[00:01.20]lo", "100 Hello", 0},
        LrcCase{"brackets that are text", "[00:01.00][Chorus] a <3 [b]", "100 [Chorus] a <3 [b]",
                0},
        LrcCase{"comment", "# a comment\n[00:01.00]a", "100 a", 0},
        LrcCase{"control characters", "[00:01.00]a\x1b[2Jb\x07", "100 a [2Jb", 0}));

INSTANTIATE_TEST_SUITE_P(
    OddAndBroken, LrcForms,
    testing::Values(LrcCase{"empty", "", "", 1}, LrcCase{"tags only", "[ti:A]\n", "", 1},
                    LrcCase{"pauses only", "[00:01.00]\n", "100 ", 1},
                    LrcCase{"seconds above 59", "[00:61.00]a\n[00:02.00]b", "200 b", 1},
                    LrcCase{"open bracket", "[00:01.00\n[00:02.00]b", "200 b", 1},
                    LrcCase{"no stamp", "[00:01.00]a\nb", "100 a", 1},
                    LrcCase{"section", "[Chorus]\n[00:01.00]a", "100 a", 1},
                    LrcCase{"offset no number", "[offset:soon]\n[00:01.00]a", "100 a", 1},
                    LrcCase{"offset infinite", "[offset:inf]\n[00:01.00]a", "100 a", 1},
                    LrcCase{"no stamp anywhere", "a\n\nb", "a|b", 1},
                    LrcCase{"not UTF-8", "[00:01.00]\xC3(", "100 \uFFFD(", 0}));

TEST(Lrc, TagsMayStandAnywhereInAnyLetterCase) {
  const LyricFile file = readLrc("a.lrc", "[00:01.00]a\n[TI: A song ]\n[ar:B]\n[ar:C]\n[re:]");
  EXPECT_EQ(file.tags, (std::map<std::string, std::string>{{"ti", "A song"}, {"ar", "B"}}));
}

TEST(Lrc, LinesKeepTheirNumbers) {
  const LyricFile file = readLrc("a.lrc", "[ti:A]\n\n[00:02.00]b\n[00:01.00]a");
  ASSERT_EQ(file.lines.size(), 2U);
  EXPECT_EQ(file.lines[0].number, 4);
  EXPECT_EQ(file.lines[1].number, 3);
}

TEST(Lrc, AMistakeIsToldWithFileLineAndWhatToDo) {
  const LyricFile file = readLrc("songs/a.lrc", "[00:01.00]a\n[00:61.00]b");
  ASSERT_EQ(file.problems.size(), 1U);
  EXPECT_EQ(file.problems[0].text(),
            "songs/a.lrc:2: warning: the time stamp \"[00:61.00\" cannot be read; write it as "
            "[mm:ss.xx] with seconds below 60");
}

TEST(Lrc, AStampedLineTimesItselfIsBounded) {
  std::string stamps;
  for (int i = 0; i < 10000; ++i) stamps += "[00:01.00]";
  std::string text;
  for (int i = 0; i < 100; ++i) text += stamps + std::string(5000, 'x') + "\n";
  const LyricFile file = readLrc("a.lrc", text);
  EXPECT_EQ(file.lines.size(), mostLines);
  EXPECT_TRUE(anyError(file.problems));
  for (const FileLine& line : file.lines) ASSERT_LE(line.text.size(), 1000U);
}

TEST(Lrc, MistakesDoNotGrowWithoutEnd) {
  std::string text = "[00:01.00]a\n";
  for (int i = 0; i < 100000; ++i) text += "[00:99.00]b\n";
  EXPECT_LE(readLrc("a.lrc", text).problems.size(), Problems::most + 1);
}

TEST(Lrc, SixteenMebibytesOfOpenBracketsAreReadInTime) {
  const std::string text(std::size_t{16} * 1024 * 1024, '[');
  EXPECT_LE(readLrc("a.lrc", text).lines.size(), 1U);
}

}  // namespace
}  // namespace vellora::companion
