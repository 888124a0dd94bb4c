#include "platform/linux/drawing/shown_text.h"

#include <string>

#include <gtest/gtest.h>

namespace vellora {
namespace {

using std::string_literals::operator""s;

TEST(ShownTextTest, EveryEndOfALineIsOne) {
  EXPECT_EQ(shownText("a\nb\rc\r\nd\ve\ff\u0085g\u2029h"), "a\nb\nc\nd\ne\nf\ng\nh");
  EXPECT_EQ(shownText("\r\r\n\n\r"), "\n\n\n\n");
  // It ends a line and no paragraph.
  EXPECT_EQ(shownText("a\u2028b"), "a\u2028b");
}

TEST(ShownTextTest, OtherControlCharactersAreGone) {
  EXPECT_EQ(shownText("a\0\1\b\x0e\x1b[0m\x1f\x7f\u0080\u009fz"s), "a[0mz");
  EXPECT_EQ(shownText("a\tb"), "a\tb");
  // Formatting characters and blanks are no control characters.
  EXPECT_EQ(shownText("a\u200db\u200f\u00a0\u00adc"), "a\u200db\u200f\u00a0\u00adc");
}

TEST(ShownTextTest, WhatIsNoUtf8IsReplaced) {
  EXPECT_EQ(shownText("a\xff\xe5\x9c"), "a\uFFFD\uFFFD");
  EXPECT_EQ(shownText(""), "");
}

TEST(ShownTextTest, OnOneLineOneSpaceStandsForTheEndsOfLinesAndTheirBlanks) {
  EXPECT_EQ(onOneLine("one\n\nthree"), "one three");
  EXPECT_EQ(onOneLine("one  \n \t\n\u3000two\u2028three"), "one two three");
  EXPECT_EQ(onOneLine("one  two"), "one  two");
}

TEST(ShownTextTest, OnOneLineBlanksAtTheEndAndEmptyLinesBeforeAreGone) {
  EXPECT_EQ(onOneLine("one \n\n "), "one");
  EXPECT_EQ(onOneLine("\n \n one"), "one");
  EXPECT_EQ(onOneLine("  one"), "  one");
  EXPECT_EQ(onOneLine(" \n "), "");
  EXPECT_EQ(onOneLine(""), "");
}

}  // namespace
}  // namespace vellora
