// Files that were made to do harm: none may end the program, take a time that grows faster than the
// file, or come out larger than the bounds.
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "base/utf8.h"
#include "companion/lyrics/reading.h"
#include "companion/song/song.h"
#include "companion/song/text.h"

namespace vellora::companion {
namespace {

// A quarter of what is read at most: a time that grows faster than the file outlasts the test here,
// too.
constexpr std::size_t huge = std::size_t{4} * 1024 * 1024;

std::string repeated(std::string_view piece, std::size_t bytes) {
  std::string result;
  result.reserve(bytes + piece.size());
  while (result.size() < bytes) result += piece;
  result.resize(bytes);
  return result;
}

void expectBounded(const LyricFile& file) {
  EXPECT_LE(file.lines.size(), mostLines);
  EXPECT_LE(file.problems.size(), 2 * Problems::most + 2);
  for (const FileLine& line : file.lines) {
    ASSERT_LE(line.text.size(), longestText);
    ASSERT_LE(line.translation.size(), longestText);
    ASSERT_TRUE(isWellFormed(line.text));
    ASSERT_EQ(line.text.find('\x1b'), std::string::npos);
  }
  for (const Problem& problem : file.problems) {
    ASSERT_EQ(problem.text().find('\x1b'), std::string::npos);
    ASSERT_LE(problem.text().size(), 1000U);
  }
}

struct HugeCase {
  const char* ending;
  const char* piece;
};

class HugeFiles : public testing::TestWithParam<HugeCase> {};

TEST_P(HugeFiles, AreReadInTimeAndWithinBounds) {
  const std::string name = std::string("a") + GetParam().ending;
  LyricFile file = readLyrics(name, repeated(GetParam().piece, huge), "de");
  expectBounded(file);
  const Song song =
      assemble(std::move(file), readLyrics(name, repeated(GetParam().piece, 1 << 20), ""));
  EXPECT_LE(song.lines.size(), mostLines);
}

INSTANTIATE_TEST_SUITE_P(
    Each, HugeFiles,
    testing::Values(HugeCase{".lrc", "[00:01.00]"}, HugeCase{".lrc", "[00:01.00]x\n"},
                    HugeCase{".lrc", "<00:01.00>"}, HugeCase{".lrc", "[ti:"},
                    HugeCase{".lrc", "x\n"}, HugeCase{".lrc", "\n"},
                    HugeCase{".srt", "00:00:01,0 --> "},
                    HugeCase{".srt", "00:00:01,0 --> x\na\n<i>{\\b}\n"}, HugeCase{".srt", "<"},
                    HugeCase{".ttml", "<p begin='1s'>"}, HugeCase{".ttml", "<a>"},
                    HugeCase{".ttml", "<p begin='1s'>x</p>"}, HugeCase{".ttml", "<title><p>"},
                    HugeCase{".ttml", "<translation><text for='a'>"}, HugeCase{".ttml", "<!-- "},
                    HugeCase{".ttml", "&amp;"}, HugeCase{".po", "msgid \"a\"\nmsgstr \"b\"\n"},
                    HugeCase{".po", "msgid \""}, HugeCase{".po", "\"a\"\n"}, HugeCase{".po", "\\"},
                    HugeCase{".tsv", "a\tb\n"}, HugeCase{".tsv", "\t"}, HugeCase{".txt", "a\n\n"},
                    HugeCase{".txt", "\xE9\xE8"}, HugeCase{".txt", "\x1b[2J"}));

TEST(DeepDocuments, WholeOnesAreReadWithoutRecursion) {
  constexpr std::size_t depth = 1'000'000;
  std::string text = "<tt>";
  for (std::size_t i = 0; i < depth; ++i) text += "<p>";
  text += "x";
  for (std::size_t i = 0; i < depth; ++i) text += "</p>";
  text += "</tt>";
  const LyricFile file = readLyrics("a.ttml", text, "");
  ASSERT_EQ(file.lines.size(), 1U);
  EXPECT_EQ(file.lines[0].text, "x");
}

// Pieces of every format in random order, with random bytes between.
TEST(RandomFiles, HarmNothing) {
  const std::string_view pieces[] = {"[00:01.00]",
                                     "[",
                                     "]",
                                     "<00:02.00>",
                                     "[offset:",
                                     "[ti:a]",
                                     "\n",
                                     "\r",
                                     "1\n",
                                     "00:00:01,000 --> 00:00:02,000\n",
                                     "{\\an8}",
                                     "<p",
                                     " begin=\"1s\">",
                                     "</p>",
                                     "<tt>",
                                     "</tt>",
                                     "<br/>",
                                     "&#x0;",
                                     "&#xD800;",
                                     "<![CDATA[",
                                     "]]>",
                                     "<!--",
                                     "msgid ",
                                     "msgstr ",
                                     "\"",
                                     "\\",
                                     "#, fuzzy",
                                     "\t",
                                     "\xFF",
                                     "\xE4\xBD",
                                     "\xEF\xBB\xBF",
                                     "é",
                                     "\x1b]0;x\x07"};
  std::mt19937 random(20261121);
  for (int round = 0; round < 800; ++round) {
    std::string text;
    const std::size_t count = random() % 60;
    for (std::size_t i = 0; i < count; ++i) {
      const std::size_t which = random() % (std::size(pieces) + 2);
      if (which < std::size(pieces)) {
        text += pieces[which];
      } else {
        text.push_back(static_cast<char>(random() % 256));
      }
    }
    for (const std::string_view ending : readableEndings) {
      LyricFile file = readLyrics("a" + std::string(ending), text, "de");
      expectBounded(file);
      const Song song = assemble(std::move(file), readLyrics("b.lrc", text, ""));
      (void)song.overlayLines();
      if (HasFatalFailure()) FAIL() << testing::PrintToString(text);
    }
  }
}

}  // namespace
}  // namespace vellora::companion
