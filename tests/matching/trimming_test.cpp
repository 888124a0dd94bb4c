#include "matching/trimming.h"

#include <gtest/gtest.h>

namespace vellora::OverlayMatching {
namespace {

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

}  // namespace
}  // namespace vellora::OverlayMatching
