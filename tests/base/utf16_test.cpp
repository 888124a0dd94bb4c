#include "base/utf16.h"

#include <string>

#include <gtest/gtest.h>

#include "base/utf8.h"

namespace vellora {
namespace {

using namespace std::string_literals;

TEST(Utf16Test, EveryCharacterComesBack) {
  for (char32_t c = 0; c <= 0x10FFFF; ++c) {
    if (c >= 0xD800 && c <= 0xDFFF) continue;
    std::string text;
    appendCharacter(text, c);
    const std::u16string units = toUtf16(text);
    ASSERT_EQ(units.size(), c < 0x10000 ? 1U : 2U);
    ASSERT_EQ(fromUtf16(units), text);
  }
}

// The examples of the Unicode standard, chapter 3.9, table 3-4, and the ends of the range.
TEST(Utf16Test, FormsHaveOneOrTwoUnits) {
  EXPECT_EQ(toUtf16("M\xD0\xB0\xE4\xBA\x8C\xF0\x90\x8C\x82"), u"\u004D\u0430\u4E8C\xD800\xDF02");
  EXPECT_EQ(toUtf16("\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"), u"\xD800\xDC00\xDBFF\xDFFF");
  EXPECT_EQ(fromUtf16(u"\xD800\xDC00\xDBFF\xDFFF"), "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF");
}

TEST(Utf16Test, SurrogateWithoutItsPartnerIsReplaced) {
  EXPECT_EQ(fromUtf16(u"a\xD83C"), "a\uFFFD");
  EXPECT_EQ(fromUtf16(u"\xDFB5z"), "\uFFFDz");
  EXPECT_EQ(fromUtf16(u"\xDFB5\xD83C"), "\uFFFD\uFFFD");
  EXPECT_EQ(fromUtf16(u"\xD83C\xD83C\xDFB5"), "\uFFFD\U0001F3B5");
  EXPECT_EQ(fromUtf16(u"\xD83C\u0061"), "\uFFFDa");
}

TEST(Utf16Test, IllFormedUtf8IsReplaced) {
  EXPECT_EQ(toUtf16("a\xC3z"), u"a\uFFFDz");
  EXPECT_EQ(toUtf16("\xED\xA0\x80"), u"\uFFFD\uFFFD\uFFFD");
}

TEST(Utf16Test, ByteOrderMarksAndNullsAreKept) {
  EXPECT_EQ(toUtf16("\xEF\xBB\xBFx\0y"s), u"\uFEFFx\0y"s);
  EXPECT_EQ(fromUtf16(u"\uFEFFx\0y"s), "\xEF\xBB\xBFx\0y"s);
}

}  // namespace
}  // namespace vellora
