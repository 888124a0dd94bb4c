#include <gtest/gtest.h>

#include "companion/lines_text.h"
#include "companion/lyrics/reading.h"
#include "companion/song/song.h"

namespace vellora::companion {
namespace {

Song songOf(const char* name, const char* lyrics, const char* other = nullptr,
            const char* translation = "") {
  std::optional<LyricFile> file;
  if (other != nullptr) file = readLyrics(other, translation, "");
  return assemble(readLyrics(name, lyrics, ""), std::move(file));
}

struct PairCase {
  const char* what;
  const char* name;
  const char* lyrics;
  const char* otherName;  // null: none
  const char* other;
  const char* lines;
  const char* problems;
};

class Pairs : public testing::TestWithParam<PairCase> {};

TEST_P(Pairs, ArePutTogether) {
  const PairCase& given = GetParam();
  const Song song = songOf(given.name, given.lyrics, given.otherName, given.other);
  EXPECT_EQ(textOf(song), given.lines) << given.what;
  EXPECT_EQ(textOf(song.problems), given.problems) << given.what;
}

INSTANTIATE_TEST_SUITE_P(
    ByTime, Pairs,
    testing::Values(
        PairCase{"two files", "s.lrc", "[00:01.00]a\n[00:02.00]b", "s.de.lrc",
                 "[00:01.00]A\n[00:02.00]B", "100 a=A|200 b=B", ""},
        PairCase{"rounded otherwise", "s.lrc", "[00:01.00]a", "s.de.lrc", "[00:01.04]A", "100 a=A",
                 ""},
        PairCase{"offsets of each", "s.lrc", "[offset:1000]\n[00:02.00]a", "s.de.lrc",
                 "[00:01.00]A", "100 a=A", ""},
        PairCase{"an offset in the lyrics alone", "s.lrc", "[offset:500]\n[00:02.00]a\n[00:03.00]b",
                 "s.de.lrc", "[00:02.00]A\n[00:03.00]B", "150 a=A|250 b=B", ""},
        PairCase{"an offset in the translation alone", "s.lrc", "[00:02.00]a\n[00:03.00]b",
                 "s.de.lrc", "[offset:-500]\n[00:02.00]A\n[00:03.00]B", "200 a=A|300 b=B", ""},
        PairCase{
            "an offset in the lyrics alone, and a time of no line", "s.lrc",
            "[offset:500]\n[00:02.00]a\n[00:03.00]b", "s.de.lrc", "[00:02.00]A\n[00:03.20]B",
            "150 a=A|250 b",
            "s.de.lrc:2: warning: no line of the lyrics has the time [00:03.20] of \"B\"; give it "
            "the time of the line that it translates; the nearest is [00:03.00]"},
        PairCase{"a line less", "s.lrc", "[00:01.00]a\n[00:02.00]b", "s.de.lrc", "[00:02.00]B",
                 "100 a|200 b=B", ""},
        PairCase{"two of one time", "s.lrc", "[00:01.00]a\n[00:01.00]b", "s.de.lrc",
                 "[00:01.00]A\n[00:01.00]B", "100 a=A|100 b=B", ""},
        PairCase{"repeated lines", "s.lrc", "[00:01.00][00:03.00]a\n[00:02.00]b", "s.de.lrc",
                 "[00:01.00][00:03.00]A\n[00:02.00]B", "100 a=A|200 b=B|300 a=A", ""},
        PairCase{"pauses do not count", "s.lrc", "[00:01.00]\n[00:02.00]b", "s.de.lrc",
                 "[00:01.00]\n[00:02.00]B", "200 b=B", ""},
        PairCase{
            "a time of no line", "s.lrc", "[00:01.00]a\n[00:02.00]b", "s.de.lrc",
            "[00:01.00]A\n[00:02.20]B", "100 a=A|200 b",
            "s.de.lrc:2: warning: no line of the lyrics has the time [00:02.20] of \"B\"; give it "
            "the time of the line that it translates; the nearest is [00:02.00]"}));

INSTANTIATE_TEST_SUITE_P(
    InOneFile, Pairs,
    testing::Values(
        PairCase{"bilingual", "s.lrc", "[00:01.00]a\n[00:01.00]A\n[00:02.00]b\n[00:02.00]B",
                 nullptr, "", "100 a=A|200 b=B", ""},
        PairCase{"translation apart", "s.lrc", "[00:01.00]a\n[00:02.00]b\n[00:01.00]A\n[00:02.00]B",
                 nullptr, "", "100 a=A|200 b=B", ""},
        PairCase{"half of it", "s.lrc", "[00:01.00]a\n[00:01.00]A\n[00:02.00]b", nullptr, "",
                 "100 a=A|200 b", ""},
        PairCase{"a duet's one doubled time", "s.lrc",
                 "[00:01.00]a\n[00:01.00]x\n[00:02.00]b\n[00:03.00]c", nullptr, "",
                 "100 a|100 x|200 b|300 c", ""},
        PairCase{
            "with a transcription", "s.lrc", "[00:01.00]a\n[00:01.00]r\n[00:01.00]A", nullptr, "",
            "100 a=A",
            "s.lrc:1: note: 3 lines have the time [00:01.00]; the first is taken as the lyrics, "
            "the last as their translation"},
        PairCase{"a file beside it outweighs", "s.lrc", "[00:01.00]a\n[00:01.00]x", "s.de.lrc",
                 "[00:01.00]A\n[00:01.00]X", "100 a=A|100 x=X", ""},
        PairCase{"SRT", "s.srt", "00:00:01,0 --> x\na\nA\n", nullptr, "", "100 a=A", ""},
        PairCase{"a table alone", "s.tsv", "a\tA\nb\tB", nullptr, "", "a=A|b=B", ""}));

INSTANTIATE_TEST_SUITE_P(
    ByPlace, Pairs,
    testing::Values(
        PairCase{"two texts", "s.txt", "a\nb\n\nc\n", "s.de.txt", "A\nB\n\nC", "a=A|b=B|c=C", ""},
        PairCase{"other blank lines", "s.txt", "a\nb\n\n\nc\n", "s.de.txt", "A\n\nB\nC",
                 "a=A|b=B|c=C", ""},
        PairCase{"times on one side", "s.lrc", "[00:01.00]a\n[00:02.00]b", "s.de.txt", "A\nB",
                 "100 a=A|200 b=B", ""},
        PairCase{"a stanza differs", "s.txt", "a\nb\n\nc\nd\n\ne", "s.de.txt", "A\nB\n\nC\n\nE",
                 "a=A|b=B|c|d|e=E",
                 "s.de.txt:4: warning: 1 line where the lyrics have 2, from their line 4 on; give "
                 "each line of the lyrics a line of its own here"},
        PairCase{"a stanza is missing", "s.txt", "a\nb\n\nc\n", "s.de.txt", "A\nB", "a=A|b=B|c",
                 "s.de.txt: warning: 2 lines in 1 stanzas where the lyrics have 3 in 2; part the "
                 "stanzas with a blank line, as the lyrics do"}));

INSTANTIATE_TEST_SUITE_P(ByTable, Pairs,
                         testing::Values(PairCase{"as the overlay looks up", "s.lrc",
                                                  "[00:01.00]Hello, World!\n[00:02.00]b", "s.po",
                                                  "msgid \"hello world\"\nmsgstr \"Hallo\"",
                                                  "100 Hello, World!=Hallo|200 b", ""},
                                         PairCase{"lines joined", "s.lrc", "[00:01.00]a, b",
                                                  "s.tsv", "a\tA\nb\tB", "100 a, b=A B", ""},
                                         PairCase{"every repetition", "s.lrc",
                                                  "[00:01.00][00:02.00]a", "s.tsv", "a\tA",
                                                  "100 a=A|200 a=A", ""}));

TEST(Song, IsCompleteWhenEveryLineWithLettersIsTranslated) {
  EXPECT_TRUE(songOf("s.tsv", "a\tA\n♪\t\n").complete());
  EXPECT_FALSE(songOf("s.tsv", "a\tA\nb\t\n").complete());
  EXPECT_FALSE(songOf("s.tsv", "♪\t\n").complete());
}

struct LossCase {
  const char* what;
  const char* name;
  const char* lyrics;
  std::size_t lost;
};

class LostLines : public testing::TestWithParam<LossCase> {};

// Each of these is a song whose lines that are left all have a translation.
TEST_P(LostLines, KeepASongFromBeingComplete) {
  const LossCase& given = GetParam();
  const Song song = songOf(given.name, given.lyrics);
  ASSERT_GT(song.translated(), 0U) << given.what;
  ASSERT_EQ(song.translated(), song.lines.size()) << given.what;
  EXPECT_EQ(song.lostLines, given.lost) << given.what;
  EXPECT_EQ(song.complete(), given.lost == 0) << given.what;
}

INSTANTIATE_TEST_SUITE_P(
    OfEachFormat, LostLines,
    testing::Values(
        LossCase{"LRC, none", "s.lrc", "[00:01.00]a\n[00:01.00]A\n", 0},
        LossCase{"LRC, bad stamp", "s.lrc", "[00:01.00]a\n[00:01.00]A\n[00:61.00]b\n", 1},
        LossCase{"LRC, no stamps", "s.lrc", "[00:01.00]a\n[00:01.00]A\nb\nB\n", 2},
        LossCase{"SRT", "s.srt", "00:00:01,0 --> x\na\nA\n\n00:00:0x,0 --> x\nb\nB\n", 2},
        LossCase{"TTML, none", "s.ttml", "<p begin='1s'>a<span role='x-translation'>A</span></p>",
                 0},
        LossCase{"TTML, bad time", "s.ttml",
                 "<tt><p begin='1s'>a<span role='x-translation'>A</span></p>"
                 "<p begin='x'>b<br/>c</p></tt>",
                 2},
        LossCase{"TTML, no time", "s.ttml",
                 "<tt><p begin='1s'>a<span role='x-translation'>A</span></p><p>b</p></tt>", 1},
        LossCase{"PO, none", "s.po", "msgid \"a\"\nmsgstr \"A\"\n", 0},
        LossCase{"PO, no msgstr", "s.po", "msgid \"b\"\nmsgid \"a\"\nmsgstr \"A\"\n", 1},
        LossCase{"PO, no msgid", "s.po", "msgstr \"B\"\nmsgid \"a\"\nmsgstr \"A\"\n", 1},
        LossCase{"PO, open quotes", "s.po", "msgid \"a\"\nmsgstr \"A\"\nmsgid \"b\nmsgstr \"B\"\n",
                 1},
        LossCase{"PO, fuzzy", "s.po",
                 "msgid \"a\"\nmsgstr \"A\"\n#, fuzzy\nmsgid \"b\"\nmsgstr \"B\"\n", 1},
        LossCase{"TSV, none", "s.tsv", "# x\na\tA\n", 0},
        LossCase{"TSV, no source", "s.tsv", "a\tA\n\tB\n", 1}));

TEST(LostLines, BeyondTheMostThatAreTakenCount) {
  std::string table;
  std::string text;
  for (std::size_t i = 0; i <= mostLines; ++i) {
    table += "a\tA\n";
    text += "a\n";
  }
  EXPECT_FALSE(songOf("s.tsv", table.c_str()).complete());
  EXPECT_FALSE(songOf("s.txt", text.c_str(), "s.de.txt", text.c_str()).complete());
  EXPECT_FALSE(songOf("s.lrc", text.c_str(), "s.de.txt", text.c_str()).complete());
}

TEST(LostLines, OfATranslationLeaveTheSongCompleteWhereNoLineLacksOne) {
  EXPECT_TRUE(
      songOf("s.lrc", "[00:01.00]a", "s.de.lrc", "[00:01.00]A\nBy a translator").complete());
}

TEST(Song, OverlayLinesLeaveOutWhatMatchesNothing) {
  const auto lines = songOf("s.tsv", "a\tA\n♪ ♪\tmusic\nb\t\n").overlayLines();
  EXPECT_EQ(lines, (std::vector<OverlayLine>{{"a", "A"}, {"b", ""}}));
}

TEST(Song, TheSungLineIsTheLastThatHasBegun) {
  const Song song = songOf("s.lrc", "[00:01.00]a\n[00:02.00]b");
  EXPECT_EQ(song.lineAt(0.99), std::nullopt);
  EXPECT_EQ(song.lineAt(1), 0U);
  EXPECT_EQ(song.lineAt(1.99), 0U);
  EXPECT_EQ(song.lineAt(500), 1U);
  EXPECT_EQ(songOf("s.tsv", "a\tA").lineAt(5), std::nullopt);
}

}  // namespace
}  // namespace vellora::companion
