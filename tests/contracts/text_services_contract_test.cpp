#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "platform/text_services.h"

// What the services promise beside the tables of tests/golden, which hold them too. There is no
// fake of them, so the one test program per system has the system's own.
namespace vellora {
namespace {

TEST(TextServicesContract, TraditionalBecomesSimplifiedAndTheRestStays) {
  EXPECT_EQ(TextServices::simplified("我愛你, 漢語"), "我爱你, 汉语");
  for (const std::string text :
       {"", "plain", "Ünïcödé", "e\u0301", "ひらがな", "사랑", "汉语", "🎵"}) {
    EXPECT_EQ(TextServices::simplified(text), text);
  }
}

TEST(TextServicesContract, IllFormedPartsBecomeReplacementCharacters) {
  EXPECT_EQ(TextServices::simplified("愛\xFF"), "爱\uFFFD");
  EXPECT_EQ(TextServices::canonicalForm("a\xFF"), "a\uFFFD");
}

TEST(TextServicesContract, FoldsCaseMarksAndWidthButNotOtherScripts) {
  EXPECT_EQ(TextServices::folded("ÅÉñ ώΐ йЁ"), "aen ωι ие");
  EXPECT_EQ(TextServices::folded("Ａ１！"), "a1!");
  EXPECT_EQ(TextServices::folded("ß ς ﬁ İ ı"), "ss σ fi i ı");
  EXPECT_EQ(TextServices::folded("が"), "が");
  EXPECT_EQ(TextServices::folded("\u3000Ⓐ"), "\u3000ⓐ");
}

TEST(TextServicesContract, LettersMarksAndNumbersOnlyAreAlphanumeric) {
  for (const char32_t c : std::u32string(U"aZ5Àßあ中かㄱกא愛각ا\u0301\u3099\u20E3٣²½Ⅷ①")) {
    EXPECT_TRUE(TextServices::isAlphanumeric(c)) << std::hex << static_cast<unsigned>(c);
  }
  for (const char32_t c :
       std::u32string(U" \t\n\u00A0\u3000!?.,-–—…'’\"()[]/&+*=#@_♪♫•·。、「」！？💚🎵🇫€ⓐ"
                      U"\u200B\u200D\uFEFF\uFFFD\U000E0001\U0010FFFF") +
           U'\0') {
    EXPECT_FALSE(TextServices::isAlphanumeric(c)) << std::hex << static_cast<unsigned>(c);
  }
}

TEST(TextServicesContract, CanonicalEquivalentsHaveOneForm) {
  EXPECT_EQ(TextServices::canonicalForm("e\u0301"), TextServices::canonicalForm("é"));
  EXPECT_EQ(TextServices::canonicalForm("\u1100\u1161\u11A8"), TextServices::canonicalForm("각"));
  EXPECT_EQ(TextServices::canonicalForm("a\u0301\u0316"),
            TextServices::canonicalForm("a\u0316\u0301"));
  EXPECT_NE(TextServices::canonicalForm("e"), TextServices::canonicalForm("é"));
  EXPECT_NE(TextServices::canonicalForm("ﬁ"), TextServices::canonicalForm("fi"));
}

TEST(TextServicesContract, BeginsWithByWholeCharacters) {
  EXPECT_TRUE(TextServices::beginsWith("éa", "e\u0301"));
  EXPECT_TRUE(TextServices::beginsWith("anything", ""));
  EXPECT_TRUE(TextServices::beginsWith("각b", "각"));
  EXPECT_FALSE(TextServices::beginsWith("e\u0301a", "e"));
  EXPECT_FALSE(TextServices::beginsWith("각", "가"));
  EXPECT_FALSE(TextServices::beginsWith("👩\u200D👧", "👩"));
  EXPECT_FALSE(TextServices::beginsWith("🇩🇪", "🇩"));
  EXPECT_FALSE(TextServices::beginsWith("a", "ab"));
}

TEST(TextServicesContract, ManyThreadsMayAskAtOnce) {
  std::vector<std::thread> threads;
  std::vector<int> wrong(4);
  for (std::size_t at = 0; at < wrong.size(); ++at) {
    threads.emplace_back([&wrong, at] {
      for (int round = 0; round < 200; ++round) {
        wrong[at] += TextServices::simplified("我愛你 乾杯") != "我爱你 干杯";
        wrong[at] += TextServices::folded("ÅÉ") != "ae";
        wrong[at] += !TextServices::beginsWith("가각", "가");
        wrong[at] += TextServices::beginsWith("e\u0301", "e");
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrong, std::vector<int>(4));
}

}  // namespace
}  // namespace vellora
