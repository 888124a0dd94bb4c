// Files with lyrics and translation as they are found, and others that must not be taken for one.
#include "companion/song/bilingual.h"

#include <gtest/gtest.h>

#include "companion/lines_text.h"
#include "companion/lyrics/reading.h"

namespace vellora::companion {
namespace {

struct FoundCase {
  const char* what;
  const char* text;
  const char* lines;
};

class FoundFiles : public testing::TestWithParam<FoundCase> {};

TEST_P(FoundFiles, AreReadAsTheyAreMeant) {
  const Song song = assemble(readLyrics("s.lrc", GetParam().text, ""), std::nullopt);
  EXPECT_EQ(textOf(song), GetParam().lines) << GetParam().what;
}

INSTANTIATE_TEST_SUITE_P(
    WithTranslations, FoundFiles,
    testing::Values(
        FoundCase{"some 10 ms later",
                  "[00:01.00]a\n[00:01.01]A\n[00:02.00]b\n[00:02.03]B\n[00:03.00]c\n",
                  "100 a=A|200 b=B|300 c"},
        FoundCase{"under the next line's time",
                  "[00:01.00]one\n[00:02.00]一\n[00:02.00]two\n[00:03.00]二\n[00:03.00]three\n"
                  "[00:04.00]三\n",
                  "100 one=一|200 two=二|300 three=三"},
        FoundCase{"the same, and a line without",
                  "[00:01.00]one\n[00:02.00]一\n[00:02.00]two\n[00:03.00]二\n[00:03.00]la\n"
                  "[00:04.00]four\n[00:05.00]四\n[00:05.00]five\n[00:06.00]五\n[00:06.00]six\n"
                  "[00:07.00]六\n",
                  "100 one=一|200 two=二|300 la|400 four=四|500 five=五|600 six=六"},
        FoundCase{"marked", "[00:01.00]a\n[00:01.00][tr:de]A\n[00:02.00]b\n[00:02.00][tr]B\n",
                  "100 a=A|200 b=B"},
        FoundCase{"marked, one alone", "[00:01.00]a\n[00:02.00]b\n[00:02.00][tr]B\n[00:03.00]c",
                  "100 a|200 b=B|300 c"},
        FoundCase{"marked below its line", "[00:01.00]a\n[tr]A\n[00:02.00]b\n", "100 a=A|200 b"},
        FoundCase{"times of words", "[00:01.00]a b\n[00:01.00][tt]<0,0><500,2><900,3>\n",
                  "100 a b"}));

INSTANTIATE_TEST_SUITE_P(
    WithCredits, FoundFiles,
    testing::Values(FoundCase{"Chinese",
                              "[00:00.00]作词 : 方\n[00:00.50]作曲：周\n[00:01.00]编曲/混音: x\n"
                              "[00:02.00]a\n",
                              "200 a"},
                    FoundCase{"Chinese at the end", "[00:02.00]a\n[00:09.00]母带 : x\n", "200 a"},
                    FoundCase{"Korean", "[00:00.00]작사: x\n[00:02.00]a\n", "200 a"},
                    FoundCase{"English",
                              "[00:00.00]Title - Band\n[00:00.50]Lyrics by: x\n[00:00.70]\n"
                              "[00:01.00]Composed by：y\n[00:02.00]a\n[00:09.00]Produced by: z\n",
                              "0 Title - Band|200 a"},
                    FoundCase{"JSON",
                              "{\"t\":0,\"c\":[{\"tx\":\"作词: \"},{\"tx\":\"x\"}]}\n[00:02.00]a\n",
                              "200 a"},
                    FoundCase{"a title and an artist before them",
                              "[00:00.00]夜\n[00:00.10]方\n[00:00.20]词：方\n[00:02.00]a\n",
                              "0 夜|10 方|200 a"},
                    FoundCase{"what is sung like one",
                              "[00:01.00]a\n[00:02.00]b\n[00:03.00]c\n[00:04.00]曲：终\n"
                              "[00:05.00]d\n[00:06.00]歌手: 你\n[00:07.00]e\n[00:09.00]曲：周\n",
                              "100 a|200 b|300 c|400 曲：终|500 d|600 歌手: 你|700 e"},
                    FoundCase{"untimed", "作词 : 方\na\nb", "a|b"},
                    FoundCase{"nothing else", "[00:00.00]作词 : 方\n", "0 作词 : 方"}));

INSTANTIATE_TEST_SUITE_P(
    Ordinary, FoundFiles,
    testing::Values(
        FoundCase{"two lines close to each other, once",
                  "[00:01.00]a\n[00:01.03]x\n[00:02.00]b\n[00:03.00]c\n[00:04.00]d\n",
                  "100 a|103 x|200 b|300 c|400 d"},
        FoundCase{"quick lines", "[00:01.00]a\n[00:01.10]b\n[00:01.20]c\n[00:01.30]d\n",
                  "100 a|110 b|120 c|130 d"},
        FoundCase{"a title before pairs, a word after them",
                  "[00:00.00]Song\n[00:01.00]one\n[00:01.00]一\n[00:02.00]two\n[00:02.00]二\n"
                  "[00:03.00]end\n",
                  "0 Song|100 one=一|200 two=二|300 end"},
        FoundCase{"a title in the translation's script",
                  "[00:00.00]歌\n[00:01.00]one\n[00:01.00]一\n[00:02.00]two\n[00:02.00]二\n"
                  "[00:03.00]three\n[00:03.00]三\n",
                  "0 歌|100 one=一|200 two=二|300 three=三"},
        FoundCase{"pairs in one script",
                  "[00:00.00]Song\n[00:01.00]one\n[00:01.00]eins\n"
                  "[00:02.00]two\n[00:02.00]zwei\n[00:03.00]end\n",
                  "0 Song|100 one=eins|200 two=zwei|300 end"},
        FoundCase{"no credit",
                  "[00:01.00]Music by the river\n[00:02.00]Lyrics by heart\n"
                  "[00:03.00]Written by hand: a letter\n[00:04.00]曲终人散\n",
                  "100 Music by the river|200 Lyrics by heart|300 Written by hand: a letter|"
                  "400 曲终人散"},
        FoundCase{"English within the song",
                  "[00:01.00]a\n[00:02.00]b\n[00:03.00]Producer: no\n"
                  "[00:04.00]c\n",
                  "100 a|200 b|300 Producer: no|400 c"},
        FoundCase{"who sings", "[00:01.00]男：a\n[00:02.00]She: b\n", "100 男：a|200 She: b"},
        FoundCase{"braces", "[00:01.00]a\n[00:02.00]{b}\n", "100 a|200 {b}"},
        FoundCase{"a tag alone", "[tr:someone]\n[00:01.00]a\n", "100 a"}));

TEST(FoundFile, CreditsAreNoted) {
  const LyricFile file = readLyrics("s.lrc", "[00:00.00]作词 : 方\n[00:02.00]a\n", "");
  EXPECT_EQ(textOf(file.problems),
            "s.lrc:1: note: 1 line from here on named who made the song, and is left out");
}

TEST(FoundFile, AnInstrumentalLacksNothing) {
  const Song song = assemble(readLyrics("s.lrc", "[ti:T]\n[au: instrumental]\n", ""), std::nullopt);
  EXPECT_TRUE(song.lines.empty());
  EXPECT_EQ(textOf(song.problems), "");
  EXPECT_TRUE(song.complete());
  const Song author = assemble(readLyrics("s.lrc", "[ti:T]\n[au:Somebody]\n", ""), std::nullopt);
  EXPECT_FALSE(author.complete());
  EXPECT_EQ(author.problems.size(), 1U);
}

}  // namespace
}  // namespace vellora::companion
