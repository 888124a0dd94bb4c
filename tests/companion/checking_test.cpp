#include "companion/library/checking.h"

#include <sstream>

#include "companion/audio_files.h"
#include "companion/song_folder.h"

namespace vellora::companion {
namespace {

class Checking : public SongFolder {
 protected:
  std::string check() {
    Library library(folder, "");
    library.refresh();
    std::ostringstream out;
    summary = checkLibrary(library, {}, out);
    return withoutFolder(out.str());
  }

  CheckSummary summary;
};

TEST_F(Checking, ACompleteSongIsClean) {
  put("A - B.lrc", "[00:01.00]a\n[00:02.00]b\n");
  put("A - B.de.lrc", "[00:01.00]x\n[00:02.00]y\n");
  EXPECT_EQ(check(),
            "B — A: 2 lines, 2 translated: complete\n"
            "1 song, 1 complete; 0 errors, 0 warnings\n");
  EXPECT_TRUE(summary.clean());
}

TEST_F(Checking, LinesWithoutATranslationAreNamedWithWhereItBelongs) {
  put("a.lrc", "[00:01.00]a\n[00:02.50]b\n");
  put("a.de.lrc", "[00:01.00]x\n");
  EXPECT_EQ(check(),
            "a: 2 lines, 1 translated\n"
            "  a.lrc:2: warning: no translation of \"b\"; add it to a.de.lrc as [00:02.50]\n"
            "1 song, 0 complete; 0 errors, 1 warning\n");
  EXPECT_FALSE(summary.clean());
}

TEST_F(Checking, ProblemsStandInTheOrderOfTheLinesEachFileByItself) {
  put("a.lrc", "[00:01.00]a\n[00:02.00]b\nno time\n[00:04.00]c\n");
  put("a.de.lrc", "[00:01.00]x\n[00:09.00]z\n[00:08.00]y\n");
  const std::string text = check();
  std::size_t last = 0;
  for (const char* start :
       {"a.lrc:2: ", "a.lrc:3: ", "a.lrc:4: ", "a.de.lrc:2: ", "a.de.lrc:3: "}) {
    const std::size_t at = text.find(std::string("  ") + start);
    ASSERT_NE(at, std::string::npos) << start << text;
    EXPECT_GT(at, last) << text;
    last = at;
  }
}

TEST_F(Checking, ASongWithoutAnyTranslationIsToldOnce) {
  put("a.lrc", "[00:01.00]a\n[00:02.50]b\n");
  EXPECT_EQ(check(),
            "a: 2 lines, 0 translated\n"
            "  a.lrc: warning: no line has a translation; put the translation beside it as "
            "a.LANGUAGE.lrc\n"
            "1 song, 0 complete; 0 errors, 1 warning\n");
}

TEST_F(Checking, TheTranslationOfLyricsInASoundFileIsAFileOfLyrics) {
  put("a.mp3", mp3([](TagLib::ID3v2::Tag& tag) { addUslt(tag, "eng", "[00:01.00]b"); }));
  EXPECT_NE(check().find("put the translation beside it as a.LANGUAGE.lrc\n"), std::string::npos);
  put("a.de.lrc", "[00:01.00]x\n");
  EXPECT_TRUE(check().starts_with("a: 1 line, 1 translated: complete\n")) << check();
}

TEST_F(Checking, AFileNamedAfterASongWithoutALanguageIsWarnedOf) {
  put("a.lrc", "[00:01.00]a\n");
  put("a.de.lrc", "[00:01.00]A\n");
  put("a.mine.lrc", "[00:01.00]A\n");
  EXPECT_EQ(
      check(),
      "a: 1 line, 1 translated: complete\n"
      "a.mine: 1 line, 0 translated\n"
      "  a.mine.lrc: warning: taken for a song of its own, not for a translation of a.lrc, and "
      "no line has a translation; if it translates a.lrc, name it a.LANGUAGE.lrc, such as "
      "a.de.lrc; if it is a song, put the translation beside it as a.mine.LANGUAGE.lrc\n"
      "2 songs, 1 complete; 0 errors, 1 warning\n");
  put("a.mine.fr.lrc", "[00:01.00]B\n");
  EXPECT_NE(check().find("2 songs, 2 complete; 0 errors, 0 warnings\n"), std::string::npos)
      << "one with translations is a song";
}

TEST_F(Checking, ALanguagesNameIsALanguage) {
  put("n.lrc", "[00:01.00]a\n");
  put("n.deutsch.lrc", "[00:01.00]A\n");
  EXPECT_EQ(check(),
            "n: 1 line, 1 translated: complete\n"
            "1 song, 1 complete; 0 errors, 0 warnings\n");
}

TEST_F(Checking, ALineWithoutLettersNeverMatches) {
  put("a.tsv", "♪ ♪\tmusic\na\tx\n");
  EXPECT_EQ(check(),
            "a: 2 lines, 2 translated: complete\n"
            "  a.tsv:1: note: \"♪ ♪\" never matches: a line without letters; nothing is to be done "
            "if it is a mark for music\n"
            "1 song, 1 complete; 0 errors, 0 warnings\n");
}

std::string table(int count) {
  std::string text;
  for (int i = 0; i < count; ++i) {
    text += std::string(1, static_cast<char>('a' + i)) + "\t" + std::to_string(i) + "\n";
  }
  return text;
}

TEST_F(Checking, ARowOfSixLinesOfTheTableMatches) {
  put("a.lrc", "[00:01.00]a b c d e f\n");
  put("a.tsv", table(6));
  EXPECT_EQ(check().substr(0, 36), "a: 1 line, 1 translated: complete\n1 ");
}

TEST_F(Checking, ARowOfSevenLinesOfTheTableNeverMatches) {
  put("a.lrc", "[00:01.00]x\n[00:02.00]b c d e f g h\n");
  put("a.tsv", table(8) + "x\tX\n");
  EXPECT_EQ(
      check(),
      "a: 2 lines, 1 translated\n"
      "  a.lrc:2: warning: \"b c d e f g h\" never matches: the row joins 7 lines of the table, "
      "from line 2 of a.tsv on; at most 6 are joined: put them in fewer lines\n"
      "1 song, 0 complete; 0 errors, 1 warning\n");
}

TEST_F(Checking, APartOfALineOfTheTableNeverMatches) {
  put("a.lrc", "[00:01.00]hold on\n[00:02.00]to me\n");
  put("a.po", "msgid \"Hold on, to me\"\nmsgstr \"x\"\n");
  const std::string text = check();
  EXPECT_NE(
      text.find("a.lrc:1: warning: \"hold on\" never matches: the row is only a part of line 1 of "
                "a.po; a row matches whole lines only: cut the table's line as the row is cut"),
      std::string::npos)
      << text;
  EXPECT_NE(text.find("a.lrc:2: warning: no translation of \"to me\"; add it to a.po\n"),
            std::string::npos)
      << text;
}

TEST_F(Checking, ATableLineWithoutTranslationBreaksTheRow) {
  put("a.lrc", "[00:01.00]a b\n");
  put("a.tsv", "a\tx\nb\t\n");
  EXPECT_NE(
      check().find("never matches: not all of its lines in the table are translated, from line "
                   "1 of a.tsv on"),
      std::string::npos);
}

TEST_F(Checking, SevenLinesOfOneTimeAreWarnedOf) {
  std::string lyrics;
  std::string translation;
  for (int i = 0; i < 7; ++i) {
    lyrics += "[00:01.00]a" + std::to_string(i) + "\n";
    translation += "[00:01.00]b" + std::to_string(i) + "\n";
  }
  put("a.lrc", lyrics);
  put("a.de.lrc", translation);
  EXPECT_NE(
      check().find("a.lrc:1: warning: 7 lines have the time [00:01.00]; shown as one row, they "
                   "never match; at most 6 lines are joined: give them times of their own"),
      std::string::npos);
}

TEST_F(Checking, AMistakeOfEachFormatIsToldWithFileLineAndWhatToDo) {
  put("a.lrc", "[00:61.00]a\n");
  put("b.srt", "1\n00:00:0x,000 --> 1\nb\n");
  put("c.ttml", "<tt>\n<p begin='1s'>c</q></tt>");
  put("d.po", "msgid \"d\n");
  put("e.tsv", "e\n");
  put("f.txt", "f\n\ng\n");
  put("f.de.txt", "F\nG\nH\n");
  put("g.lrc", std::string_view("\x89PNG\r\n\x1A\n\0\0\0\rIHDR\0", 17));
  const std::string text = check();
  for (const char* start :
       {"a.lrc:1: warning: ", "b.srt:2: warning: ", "c.ttml:2: error: ", "d.po:1: warning: ",
        "e.tsv:1: warning: ", "f.de.txt:1: warning: ", "g.lrc: error: "}) {
    const std::size_t at = text.find(std::string("  ") + start);
    ASSERT_NE(at, std::string::npos) << start << " is not in\n" << text;
    const std::string line = text.substr(at, text.find('\n', at) - at);
    EXPECT_NE(line.find("; "), std::string::npos) << "no advice: " << line;
  }
}

constexpr const char* goodSrt =
    "1\n00:00:01,000 --> 00:00:02,000\na\n\n2\n00:00:03,000 --> 00:00:04,000\nb\n";
constexpr const char* badSrt =
    "1\n00:00:01,000 --> 00:00:02,000\na\n\n2\n00:00:03,000 -> 00:00:04,000\nb\n";
constexpr const char* badArrow =
    ":6: warning: no \"-->\" in \"00:00:03,000 -> 00:00:04,000\"; write it as "
    "00:01:02,000 --> 00:01:05,000; the block is left out\n";

TEST_F(Checking, AMistakeInTheLyricsIsNotToldAgainForTheTranslation) {
  put("a.srt", badSrt);
  put("a.de.srt", goodSrt);
  const std::string text = check();
  EXPECT_NE(text.find(std::string("\n  a.srt") + badArrow), std::string::npos) << text;
  EXPECT_EQ(summary.warnings, 1U) << text;
}

TEST_F(Checking, AMistakeInTheTranslationIsNotToldAgainForTheLyrics) {
  put("a.srt", goodSrt);
  put("a.de.srt", badSrt);
  const std::string text = check();
  EXPECT_NE(text.find(std::string("\n  a.de.srt") + badArrow), std::string::npos) << text;
  EXPECT_EQ(summary.warnings, 1U) << text;
}

TEST_F(Checking, AMistakeInABilingualFileIsToldOnce) {
  put("a.srt", "1\n00:00:01,000 --> 00:00:02,000\na\n\nA\n");
  EXPECT_EQ(
      check(),
      "a: 1 line, 0 translated\n"
      "  a.srt:5: warning: no time before \"A\"; up to the next blank line all is left out; a "
      "block begins with a line \"00:01:02,000 --> 00:01:05,000\" and has no blank line in "
      "it\n"
      "1 song, 0 complete; 0 errors, 1 warning\n");
}

struct MissingCase {
  const char* file;
  const char* text;
  const char* told;
};

class MissingInTheSongsOwnFile : public Checking,
                                 public testing::WithParamInterface<MissingCase> {};

TEST_P(MissingInTheSongsOwnFile, IsToldWithWhatToDo) {
  put(GetParam().file, GetParam().text);
  EXPECT_EQ(check(), "a: 2 lines, 1 translated\n  " + std::string(GetParam().told) +
                         "\n1 song, 0 complete; 0 errors, 1 warning\n");
}

INSTANTIATE_TEST_SUITE_P(
    OfEachFormat, MissingInTheSongsOwnFile,
    testing::Values(
        MissingCase{"a.tsv", "a\tA\nb\t\n",
                    "a.tsv:2: warning: no translation of \"b\"; put it after the tab"},
        MissingCase{"a.tsv", "a\tA\nb\n",
                    "a.tsv:2: warning: no tab in \"b\"; put one between the line and its "
                    "translation"},
        MissingCase{"a.po", "msgid \"a\"\nmsgstr \"A\"\nmsgid \"b\"\nmsgstr \"\"\n",
                    "a.po:3: warning: no translation of \"b\"; write it in the msgstr after it"},
        MissingCase{"a.lrc", "[00:01.00]a\n[00:01.00]A\n[00:02.00]b\n",
                    "a.lrc:3: warning: no translation of \"b\"; put it on the next line, as "
                    "[00:02.00] too"},
        MissingCase{"a.srt", "00:00:01,0 --> x\na\nA\n\n00:00:02,0 --> x\nb\n",
                    "a.srt:6: warning: no translation of \"b\"; put it on the next line, in the "
                    "same block"},
        MissingCase{"a.ttml",
                    "<tt>\n<p begin='1s'>a<span role='x-translation'>A</span></p>\n<p "
                    "begin='2s'>b</p></tt>",
                    "a.ttml:3: warning: no translation of \"b\"; put it into its <p>, as <span "
                    "ttm:role=\"x-translation\">…</span>"}));

TEST_F(Checking, ATableWithoutATabIsToldOnceALine) {
  put("a.tsv", "a\nb\n");
  EXPECT_EQ(check(),
            "a: 2 lines, 0 translated\n"
            "  a.tsv:1: warning: no tab in \"a\"; put one between the line and its translation\n"
            "  a.tsv:2: warning: no tab in \"b\"; put one between the line and its translation\n"
            "1 song, 0 complete; 0 errors, 2 warnings\n");
}

TEST_F(Checking, ATranslationThatCannotBeReadIsToldOnce) {
  put("a.lrc", "[00:01.00]a\n[00:02.00]b\n");
  put("a.de.lrc", std::string_view("\x89PNG\r\n\x1A\n\0\0\0\rIHDR\0", 17));
  EXPECT_EQ(check(),
            "a: 2 lines, 0 translated\n"
            "  a.de.lrc: error: not a text in any encoding that is known; save it as UTF-8\n"
            "1 song, 0 complete; 1 error, 0 warnings\n");
}

TEST_F(Checking, ASongThatLostALineIsNotComplete) {
  put("a.lrc", "[00:01.00]a\n[00:01.00]A\n[00:02.00\n");
  EXPECT_EQ(check(),
            "a: 1 line, 1 translated\n"
            "  a.lrc:3: warning: the time stamp \"[00:02.00\" cannot be read; write it as "
            "[mm:ss.xx] with seconds below 60\n"
            "1 song, 0 complete; 0 errors, 1 warning\n");
}

TEST_F(Checking, WhatALostLineDoesNotExplainIsTold) {
  put("a.srt", std::string(goodSrt) + "\n3\n00:00:05,000 --> 00:00:06,000\nc\n");
  put("a.de.srt", badSrt);
  const std::string text = check();
  EXPECT_NE(text.find("a.srt:7: warning: no translation of \"b\""), std::string::npos) << text;
  EXPECT_NE(text.find("a.srt:11: warning: no translation of \"c\""), std::string::npos) << text;
  put("a.srt", badSrt);
  put("a.de.srt", std::string(goodSrt) + "\n3\n00:00:05,000 --> 00:00:06,000\nc\n");
  const std::string other = check();
  EXPECT_NE(other.find("a.de.srt:7: warning: no line of the lyrics has the time"),
            std::string::npos)
      << other;
  EXPECT_NE(other.find("a.de.srt:11: warning: no line of the lyrics has the time"),
            std::string::npos)
      << other;
}

TEST_F(Checking, AnEmptyFolderIsNotClean) {
  EXPECT_EQ(check(), "0 songs, 0 complete; 0 errors, 0 warnings\n");
  EXPECT_FALSE(summary.clean());
}

}  // namespace
}  // namespace vellora::companion
