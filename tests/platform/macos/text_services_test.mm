#include "platform/text_services.h"

#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "golden/golden_table.h"

// The tables of tests/golden are held against these services by golden_test, but for the
// alphanumerics: a system of a later Unicode version has more of them.
namespace vellora {
namespace {

TEST(TextServicesTest, EveryListedCharacterIsAlphanumeric) {
  golden::everyRow("alphanumerics.tsv", 2, [](const golden::Row& row) {
    std::ostringstream missing;
    for (char32_t c = golden::codePoint(row[0]); c <= golden::codePoint(row[1]); ++c) {
      if (!TextServices::isAlphanumeric(c)) {
        missing << std::hex << static_cast<unsigned>(c) << " is missing; ";
      }
    }
    return missing.str();
  });
}

TEST(TextServicesTest, SignsSpacesAndNothingAreNotAlphanumeric) {
  for (const char32_t c : std::u32string(U" \t\u00A0\u3000!?.,-–—…'’\"()[]/&+*=#@♪♫•·。、「」！？💚🇫"
                                         U"\u200B\u200D\uFEFF\uFFFD\U000E0001")) {
    EXPECT_FALSE(TextServices::isAlphanumeric(c)) << std::hex << static_cast<unsigned>(c);
  }
  EXPECT_FALSE(TextServices::isAlphanumeric(0));
  EXPECT_FALSE(TextServices::isAlphanumeric(0x10FFFF));
}

TEST(TextServicesTest, MarksAndNumbersAreAlphanumeric) {
  for (const char32_t c : std::u32string(U"aÀß中かㄱกא\u0301\u3099\u20E3٣²½Ⅷ①")) {
    EXPECT_TRUE(TextServices::isAlphanumeric(c)) << std::hex << static_cast<unsigned>(c);
  }
}

TEST(TextServicesTest, TraditionalBecomesSimplifiedAndTheRestStays) {
  EXPECT_EQ(TextServices::simplified("我愛你, 漢語"), "我爱你, 汉语");
  for (const std::string text : {"", "plain", "Ünïcödé", "e\u0301", "ひらがな", "사랑", "汉语"}) {
    EXPECT_EQ(TextServices::simplified(text), text);
  }
  EXPECT_EQ(TextServices::simplified("a\xFF"), "a\uFFFD");
}

TEST(TextServicesTest, FoldsCaseMarksAndWidthButNotOtherScripts) {
  EXPECT_EQ(TextServices::folded("ÅÉñ ώΐ йЁ"), "aen ωι ие");
  EXPECT_EQ(TextServices::folded("Ａ１！"), "a1!");
  EXPECT_EQ(TextServices::folded("ß ς ﬁ İ ı"), "ss σ fi i ı");
  EXPECT_EQ(TextServices::folded("が"), "が");
  EXPECT_EQ(TextServices::folded("\u3000Ⓐ"), "\u3000ⓐ");
}

TEST(TextServicesTest, CanonicalEquivalentsHaveOneForm) {
  EXPECT_EQ(TextServices::canonicalForm("e\u0301"), TextServices::canonicalForm("é"));
  EXPECT_EQ(TextServices::canonicalForm("\u1100\u1161\u11A8"), TextServices::canonicalForm("각"));
  EXPECT_NE(TextServices::canonicalForm("e"), TextServices::canonicalForm("é"));
  EXPECT_NE(TextServices::canonicalForm("ﬁ"), TextServices::canonicalForm("fi"));
}

TEST(TextServicesTest, BeginsWithByWholeCharacters) {
  EXPECT_TRUE(TextServices::beginsWith("éa", "e\u0301"));
  EXPECT_TRUE(TextServices::beginsWith("anything", ""));
  EXPECT_TRUE(TextServices::beginsWith("각b", "각"));
  EXPECT_FALSE(TextServices::beginsWith("e\u0301a", "e"));
  EXPECT_FALSE(TextServices::beginsWith("각", "가"));
  EXPECT_FALSE(TextServices::beginsWith("👩\u200D👧", "👩"));
  EXPECT_FALSE(TextServices::beginsWith("🇩🇪", "🇩"));
  EXPECT_FALSE(TextServices::beginsWith("a", "ab"));
}

TEST(TextServicesTest, ManyThreadsMayAskAtOnce) {
  std::vector<std::thread> threads;
  std::vector<int> wrong(4);
  for (std::size_t at = 0; at < wrong.size(); ++at) {
    threads.emplace_back([&wrong, at] {
      for (int round = 0; round < 200; ++round) {
        wrong[at] += TextServices::simplified("我愛你") != "我爱你";
        wrong[at] += TextServices::folded("ÅÉ") != "ae";
        wrong[at] += TextServices::beginsWith("e\u0301", "e");
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrong, std::vector<int>(4));
}

}  // namespace
}  // namespace vellora
