#include "companion/lyrics/srt.h"

#include <gtest/gtest.h>

#include "companion/lines_text.h"

namespace vellora::companion {
namespace {

struct SrtCase {
  const char* what;
  const char* text;
  const char* lines;
  const char* problems;
};

class SrtForms : public testing::TestWithParam<SrtCase> {};

TEST_P(SrtForms, AreRead) {
  const LyricFile file = readSrt("a.srt", GetParam().text);
  EXPECT_EQ(textOf(file), GetParam().lines) << GetParam().what;
  EXPECT_EQ(textOf(file.problems), GetParam().problems) << GetParam().what;
}

constexpr const char* blockAdvice =
    "; a block of SRT is a number, a line \"00:01:02,000 --> 00:01:05,000\", the text, and a blank "
    "line";

INSTANTIATE_TEST_SUITE_P(
    Each, SrtForms,
    testing::Values(
        SrtCase{"simple",
                "1\n00:00:01,000 --> 00:00:02,000\na\n\n2\n00:00:02,500 --> 00:00:03,000\nb\n",
                "100 a|250 b", ""},
        SrtCase{"carriage returns", "1\r\n00:00:01,000 --> 00:00:02,000\r\na\r\n\r\n", "100 a", ""},
        SrtCase{"two lines", "1\n00:00:01,000 --> 00:00:02,000\na\nb\n", "100 a|100 b", ""},
        SrtCase{"no number", "00:00:01,000 --> 00:00:02,000\na\n", "100 a", ""},
        SrtCase{"WebVTT", "WEBVTT\n\n00:01.500 --> 00:02.000 align:start\na\n", "150 a", ""},
        SrtCase{"tags", "1\n00:00:01,000 --> 00:00:02,000\n{\\an8}<i>a</i> <3 {b}\n",
                "100 a <3 {b}", ""},
        SrtCase{"text that is a number", "1\n00:00:01,000 --> 00:00:02,000\n1999\n", "100 1999",
                ""},
        SrtCase{"unsorted", "00:00:02,0 --> x\nb\n\n00:00:01,0 --> x\na", "100 a|200 b", ""},
        SrtCase{"bad time", "1\n00:00:61,000 --> 00:00:02,000\na\n\n00:00:02,0 --> x\nb", "200 b",
                "a.srt:2: warning: the time \"00:00:61,000\" cannot be read; write it as "
                "00:01:02,000 --> 00:01:05,000; the block is left out"},
        SrtCase{
            "blank line within", "1\n00:00:01,000 --> 00:00:02,000\na\n\nb\nc\n\n2\n", "100 a",
            "a.srt:5: warning: no time before \"b\"; up to the next blank line all is left out; a "
            "block begins with a line \"00:01:02,000 --> 00:01:05,000\" and has no blank line in "
            "it"},
        SrtCase{
            "blank line after the time", "1\n00:00:01,0 --> x\n\na\nb\n\n00:00:02,0 --> x\nc",
            "200 c",
            "a.srt:4: warning: no time before \"a\"; up to the next blank line all is left out; "
            "a block begins with a line \"00:01:02,000 --> 00:01:05,000\" and has no blank line "
            "in it"},
        SrtCase{"bad arrow", "1\n00:00:01,000 -> 00:00:02,000\na\nb\n\n2\n00:00:02,0 --> x\nc\nd\n",
                "200 c|200 d",
                "a.srt:2: warning: no \"-->\" in \"00:00:01,000 -> 00:00:02,000\"; write it as "
                "00:01:02,000 --> 00:01:05,000; the block is left out"},
        SrtCase{"bad arrow in the only block", "00:00:01,000->00:00:02,000\na\nb\n", "",
                "a.srt:1: warning: no \"-->\" in \"00:00:01,000->00:00:02,000\"; write it as "
                "00:01:02,000 --> 00:01:05,000; the block is left out"},
        SrtCase{"two bad blocks", "00:00:0x,0 --> x\na\n\n00:00:0y,0 --> x\nb\n", "",
                "a.srt:1: warning: the time \"00:00:0x,0\" cannot be read; write it as "
                "00:01:02,000 --> 00:01:05,000; the block is left out\n"
                "a.srt:4: warning: the time \"00:00:0y,0\" cannot be read; write it as "
                "00:01:02,000 --> 00:01:05,000; the block is left out"}));

TEST(Srt, LinesThatAreLeftOutAreCounted) {
  EXPECT_EQ(
      readSrt("a.srt", "1\n00:00:01,0 -> 00:00:02,0\na\nb\n\n2\n00:00:02,0 --> x\nc\n\nd\n").lost,
      3U);
  EXPECT_EQ(readSrt("a.srt", "00:00:0x,0 --> x\na\nb\n").lost, 2U);
  EXPECT_EQ(readSrt("a.srt", "WEBVTT\n\n1\n00:00:01,0 --> x\na\n").lost, 0U);
}

TEST(Srt, AnEmptyFileIsToldWhatABlockIs) {
  EXPECT_EQ(textOf(readSrt("a.srt", "").problems),
            std::string("a.srt: error: no lines") + blockAdvice);
}

}  // namespace
}  // namespace vellora::companion
