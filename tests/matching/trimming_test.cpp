#include "matching/trimming.h"

#include <iterator>
#include <random>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include "base/utf8.h"

namespace vellora::OverlayMatching {
namespace {

// Every character looked at, from the first to the last.
std::string_view plainlyTrimmed(std::string_view text) {
  std::size_t begin = text.size();
  std::size_t end = 0;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t here = at;
    if (isWhitespaceOrNewline(nextCharacter(text, at))) continue;
    if (end == 0) begin = here;
    end = at;
  }
  return end == 0 ? std::string_view() : text.substr(begin, end - begin);
}

TEST(TrimmingTest, RemovesSpacesAndLineBreaksAtBothEndsOnly) {
  EXPECT_EQ(trimmed(" \r\n\t one\n two \u3000\u2028"), "one\n two");
  EXPECT_EQ(trimmed("\u00A0\u200B\u0085é\u202F\u205F\u1680"), "é");
  EXPECT_EQ(trimmed("plain"), "plain");
}

TEST(TrimmingTest, TextOfNothingElseBecomesEmpty) {
  EXPECT_EQ(trimmed(""), "");
  EXPECT_EQ(trimmed(" \n\u2029\u2003"), "");
}

TEST(TrimmingTest, JoinersAndTheByteOrderMarkStay) {
  EXPECT_EQ(trimmed("\u200C\u200D\u2060\uFEFF"), "\u200C\u200D\u2060\uFEFF");
}

TEST(TrimmingTest, IsThatOfEveryCharacterAlsoWhereATextIsIllFormed) {
  const std::string_view pieces[] = {
      " ",    "\n",       "\u00A0",     "\u1680",       "\u200B", "\u3000",   "a",
      "é",    "文",       "\U0001F3B5", "\xC2",         "\xA0",   "\xE2\x80", "\x8B",
      "\xE2", "\xF0\x9F", "\x80\x80",   "\xE3\x80\x80", "\xFF",   "\xE0\x85"};
  std::mt19937 random(20261122);
  for (int round = 0; round < 20000; ++round) {
    std::string text;
    for (auto count = random() % 8; count > 0; --count) {
      text += pieces[random() % std::size(pieces)];
    }
    const auto expected = plainlyTrimmed(text);
    const auto found = trimmed(text);
    ASSERT_EQ(found, expected) << testing::PrintToString(text);
  }
}

TEST(TrimmingTest, LooksAtNothingBetweenTheEnds) {
  const std::string text = " " + std::string(1'000'000, 'x') + " ";
  std::size_t sum = 0;
  for (int i = 0; i < 100'000; ++i) sum += trimmed(text).size();  // minutes if it looked at each
  EXPECT_EQ(sum, 100'000'000'000U);
}

}  // namespace
}  // namespace vellora::OverlayMatching
