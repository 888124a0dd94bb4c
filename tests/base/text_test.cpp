#include "base/text.h"

#include <string>
#include <unordered_map>

#include <gtest/gtest.h>

namespace vellora {
namespace {

TEST(TextTest, TextsAreEqualWhenTheyAreCanonicallyEquivalent) {
  EXPECT_TRUE(textEquals("é", "e\u0301"));
  EXPECT_TRUE(textEquals("\u212A", "K"));
  EXPECT_TRUE(textEquals("각", "\u1100\u1161\u11A8"));
  EXPECT_TRUE(textEquals("a\u0316\u0301", "a\u0301\u0316"));
  EXPECT_FALSE(textEquals("é", "e"));
  EXPECT_FALSE(textEquals("ab", "aB"));
  // Compatibility is not equivalence.
  EXPECT_FALSE(textEquals("ﬁ", "fi"));
  EXPECT_FALSE(textEquals("", "a"));
  EXPECT_TRUE(textEquals("", ""));
}

TEST(TextTest, EqualTextsHaveEqualHashes) {
  EXPECT_EQ(textHash("é"), textHash("e\u0301"));
  EXPECT_EQ(textHash("\u212A"), textHash("K"));
  EXPECT_NE(textHash("é"), textHash("e"));
}

TEST(TextTest, MapFindsAKeyInAnySpelling) {
  std::unordered_map<std::string, int, TextHash, TextEqual> map;
  map["Café"] = 1;
  map["Cafe\u0301"] = 2;
  EXPECT_EQ(map.size(), 1U);
  EXPECT_EQ(map.find(std::string_view("Café"))->second, 2);
  EXPECT_EQ(map.find(std::string_view("Cafe")), map.end());
}

TEST(TextTest, TextBeginsByWholeCharacters) {
  EXPECT_TRUE(textBeginsWith("abc", "ab"));
  EXPECT_FALSE(textBeginsWith("ab", "abc"));
  EXPECT_FALSE(textBeginsWith("e\u0301b", "e"));
  EXPECT_TRUE(textBeginsWith("e\u0301b", "é"));
  EXPECT_FALSE(textBeginsWith("👩‍👩‍👧", "👩"));
  EXPECT_TRUE(textBeginsWith("", ""));
  EXPECT_TRUE(textBeginsWith("é", ""));
}

TEST(TextTest, LineFeedAfterACarriageReturnBelongsToIt) {
  EXPECT_FALSE(textBeginsWith("a\r\nb", "a\r"));
  EXPECT_TRUE(textBeginsWith("a\r\nb", "a\r\n"));
  EXPECT_TRUE(textBeginsWith("a\n\rb", "a\n"));
}

TEST(TextTest, IllFormedPartsCountAsReplacementCharacters) {
  EXPECT_TRUE(textEquals("a\xFF", "a\uFFFD"));
  EXPECT_EQ(textHash("a\xFF"), textHash("a\uFFFD"));
  EXPECT_FALSE(textEquals("a\xFF", "a"));
}

}  // namespace
}  // namespace vellora
