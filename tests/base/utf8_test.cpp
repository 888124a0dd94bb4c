#include "base/utf8.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace vellora {
namespace {

std::u32string charactersOf(std::string_view text) {
  std::u32string characters;
  for (std::size_t at = 0; at < text.size();) characters += nextCharacter(text, at);
  return characters;
}

TEST(Utf8Test, EveryCharacterComesBack) {
  for (char32_t c = 0; c <= 0x10FFFF; ++c) {
    if (c >= 0xD800 && c <= 0xDFFF) continue;
    std::string text;
    appendCharacter(text, c);
    std::size_t at = 0;
    ASSERT_EQ(nextCharacter(text, at), c);
    ASSERT_EQ(at, text.size());
    ASSERT_TRUE(isWellFormed(text));
  }
}

TEST(Utf8Test, FormsHaveOneToFourBytes) {
  const std::vector<std::pair<char32_t, std::string>> forms = {{0x7F, "\x7F"},
                                                               {0x80, "\xC2\x80"},
                                                               {0x7FF, "\xDF\xBF"},
                                                               {0x800, "\xE0\xA0\x80"},
                                                               {0xFFFF, "\xEF\xBF\xBF"},
                                                               {0x10000, "\xF0\x90\x80\x80"},
                                                               {0x10FFFF, "\xF4\x8F\xBF\xBF"}};
  for (const auto& [character, bytes] : forms) {
    std::string text;
    appendCharacter(text, character);
    EXPECT_EQ(text, bytes);
  }
}

// The examples of the Unicode standard, chapter 3.9, tables 3-8 to 3-11.
TEST(Utf8Test, EachMaximalIllFormedPartIsOneReplacement) {
  EXPECT_EQ(charactersOf("\xC0\xAF\xE0\x80\xBF\xF0\x81\x82\x41"),
            U"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\x41");
  EXPECT_EQ(charactersOf("\xED\xA0\x80\xED\xBF\xBF\xED\xAF\x41"),
            U"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\x41");
  EXPECT_EQ(charactersOf("\xF4\x91\x92\x93\xFF\x41\x80\xBF\x42"),
            U"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD\x41\uFFFD\uFFFD\x42");
  EXPECT_EQ(charactersOf("\xE1\x80\xE2\xF0\x91\x92\xF1\xBF\x41"), U"\uFFFD\uFFFD\uFFFD\uFFFD\x41");
  EXPECT_EQ(charactersOf("a\xE2\x82"), U"a\uFFFD");
}

TEST(Utf8Test, WellFormedTextIsKeptAndIllFormedTextMended) {
  EXPECT_TRUE(isWellFormed("plain, é, 愛, 🎵, \uFFFD"));
  EXPECT_EQ(wellFormed("é\uFFFD"), "é\uFFFD");
  EXPECT_FALSE(isWellFormed("a\xC3"));
  EXPECT_EQ(wellFormed("a\xC3z"), "a\uFFFDz");
}

TEST(Utf8Test, AsciiIsToldAtEveryLengthAndPlace) {
  for (std::size_t length = 0; length < 20; ++length) {
    std::string text(length, 'a');
    EXPECT_TRUE(isAscii(text));
    for (std::size_t at = 0; at < length; ++at) {
      text[at] = '\x80';
      EXPECT_FALSE(isAscii(text));
      text[at] = 'a';
    }
  }
}

}  // namespace
}  // namespace vellora
