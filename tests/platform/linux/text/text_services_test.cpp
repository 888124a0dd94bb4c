#include "platform/text_services.h"

#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>
#include <unicode/brkiter.h>
#include <unicode/locid.h>
#include <unicode/normalizer2.h>
#include <unicode/translit.h>
#include <unicode/uchar.h>
#include <unicode/uniset.h>
#include <unicode/unistr.h>

#include "base/text.h"
#include "base/utf8.h"

namespace vellora {
namespace {

using Random = std::mt19937;

std::size_t below(Random& random, std::size_t count) {
  return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
}

std::unique_ptr<icu::Transliterator> transliterator() {
  UErrorCode error = U_ZERO_ERROR;
  std::unique_ptr<icu::Transliterator> made(
      icu::Transliterator::createInstance("Traditional-Simplified", UTRANS_FORWARD, error));
  return U_SUCCESS(error) ? std::move(made) : nullptr;
}

std::string utf8(const icu::UnicodeString& text) {
  std::string result;
  return text.toUTF8String(result);
}

std::string decomposed(const std::string& text) {
  UErrorCode error = U_ZERO_ERROR;
  return utf8(icu::Normalizer2::getNFDInstance(error)->normalize(icu::UnicodeString::fromUTF8(text),
                                                                 error));
}

TEST(SimplifiedTest, AgreesWithTheWholeTransliterationOnRandomTexts) {
  const auto whole = transliterator();
  ASSERT_TRUE(whole);
  icu::UnicodeSet ruled;
  whole->getSourceSet(ruled);
  // The characters of the rules for several characters are tried most, in an order that makes them
  // apply: pieces of such words, and other text.
  const std::vector<std::string> pieces = {
      "乾", "坤", "杯", "著", "名", "看", "瞭", "解", "于",      "飛", "單", "鮮",
      "薑", "片", "生", "崑", "崙", "餘", "地", "有", "甚",      "麼", "複", "雜",
      "裡", "山", "糊", "塗", "後", "a",  " ",  "あ", "e\u0301", "🎵"};
  Random random(1);
  int changed = 0;
  for (int round = 0; round < 3000; ++round) {
    std::string text;
    for (std::size_t left = below(random, 12); left > 0; --left) {
      if (below(random, 4) == 0) {
        const auto at = static_cast<int32_t>(below(random, static_cast<std::size_t>(ruled.size())));
        appendCharacter(text, static_cast<char32_t>(ruled.charAt(at)));
      } else {
        text += pieces[below(random, pieces.size())];
      }
    }
    icu::UnicodeString expected = icu::UnicodeString::fromUTF8(text);
    whole->transliterate(expected);
    ASSERT_EQ(TextServices::simplified(text), utf8(expected)) << text;
    changed += utf8(expected) != text;
  }
  EXPECT_GT(changed, 1000);
}

TEST(SimplifiedTest, RulesForSeveralCharactersApply) {
  EXPECT_EQ(TextServices::simplified("乾坤, 乾杯"), "乾坤, 干杯");
  EXPECT_EQ(TextServices::simplified("著名 看著"), "著名 看着");
}

TEST(FoldedTest, MarksOfLatinGreekAndCyrillicLettersAreDropped) {
  EXPECT_EQ(TextServices::folded("ÅÉñ ώΐ йЁ"), "aen ωι ие");
  EXPECT_EQ(TextServices::folded("A\u030A\u0301 и\u0306"), "a и");
  EXPECT_EQ(TextServices::folded("ÆØŁ"), "æøł");
}

TEST(FoldedTest, MarksOfOtherScriptsStayInCanonicalOrder) {
  EXPECT_EQ(TextServices::folded("が か\u3099"), "が か\u3099");
  EXPECT_EQ(TextServices::folded("ש\u05BC\u05C1"), "ש\u05BC\u05C1");
  EXPECT_EQ(TextServices::folded("ש\u05C1\u05BC"), "ש\u05BC\u05C1");
}

TEST(FoldedTest, FirstLowMarkAfterAnUnchangedLetterIsDropped) {
  EXPECT_EQ(TextServices::folded("か\u0301"), "か");
  EXPECT_EQ(TextServices::folded("か\u0301\u0301"), "か\u0301");
  EXPECT_EQ(TextServices::folded("か\u3099\u0301"), "か\u3099\u0301");
  // The letter before the mark is changed here, so the mark stays.
  EXPECT_EQ(TextServices::folded("ｶ\u0301"), "カ\u0301");
}

TEST(FoldedTest, MarksAndNothingElseAreDroppedBehindLatinLettersAndStayBehindIdeographs) {
  for (UChar32 character = 0x510; character <= UCHAR_MAX_VALUE; ++character) {
    if (!u_isdefined(character) || U_IS_SURROGATE(character)) continue;
    const std::string alone = utf8(icu::UnicodeString(character));
    const bool isMark = u_hasBinaryProperty(character, UCHAR_GRAPHEME_EXTEND) != 0 ||
                        (character >= 0x1F3FB && character <= 0x1F3FF);  // tones of skin
    const std::string folded = isMark ? decomposed(alone) : TextServices::folded(alone);
    ASSERT_EQ(TextServices::folded("a" + alone), isMark ? "a" : "a" + folded)
        << std::hex << character;
    ASSERT_EQ(TextServices::folded("我" + alone), "我" + folded) << std::hex << character;
  }
}

TEST(FoldedTest, SkinTonesAreMarksAndJoinersAreNot) {
  EXPECT_EQ(TextServices::folded("a\U0001F3FBb"), "ab");
  EXPECT_EQ(TextServices::folded("a\u200D\u0301b"), "a\u200Db");
  EXPECT_EQ(TextServices::folded("a\u200C\u0301b"), "ab");
}

TEST(FoldedTest, LanguageOfTheUserDoesNotCount) {
  const icu::Locale before;
  for (const char* name : {"tr_TR", "lt_LT", "az_AZ", "zh_TW"}) {
    UErrorCode error = U_ZERO_ERROR;
    icu::Locale::setDefault(icu::Locale(name), error);
    ASSERT_TRUE(U_SUCCESS(error));
    EXPECT_EQ(TextServices::folded("TITLE Iıİi ÌÍ"), "title iıii ii") << name;
    EXPECT_EQ(TextServices::simplified("漢語 I"), "汉语 I") << name;
    EXPECT_TRUE(textBeginsWith("각b", "각")) << name;
  }
  UErrorCode error = U_ZERO_ERROR;
  icu::Locale::setDefault(before, error);
}

// The characters of a text, each in its canonical form.
std::vector<std::string> charactersOf(const std::string& text) {
  UErrorCode error = U_ZERO_ERROR;
  const std::unique_ptr<icu::BreakIterator> iterator(
      icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), error));
  const icu::UnicodeString units = icu::UnicodeString::fromUTF8(text);
  iterator->setText(units);
  std::vector<std::string> characters;
  int32_t begin = iterator->first();
  for (int32_t end = iterator->next(); end != icu::BreakIterator::DONE; end = iterator->next()) {
    characters.push_back(TextServices::canonicalForm(utf8(units.tempSubStringBetween(begin, end))));
    begin = end;
  }
  return characters;
}

TEST(BeginsWithTest, ComparesCharacterByCharacter) {
  const std::vector<std::string> pieces = {
      "a",      "á",      "e",  "\u0301", "\u0316", "\u0323", "가", "\u11A8", "각",
      "\u1100", "\u1161", "か", "\u3099", "が",     "\r",     "\n", "👩",      "\u200D",
      "👧",      "\u20E3", "1",  "ก",      "ำ",      "\u0600", "🇩",  "🇪"};
  Random random(2);
  int begins = 0;
  for (int round = 0; round < 20000; ++round) {
    std::string text;
    std::string prefix;
    for (std::size_t left = 1 + below(random, 5); left > 0; --left) {
      const std::string& piece = pieces[below(random, pieces.size())];
      text += piece;
      if (left > 2 || below(random, 3) == 0) prefix += piece;
    }
    const std::vector<std::string> whole = charactersOf(text);
    const std::vector<std::string> begin = charactersOf(prefix);
    const bool expected =
        begin.size() <= whole.size() && std::equal(begin.begin(), begin.end(), whole.begin());
    ASSERT_EQ(TextServices::beginsWith(text, prefix), expected) << text << " | " << prefix;
    begins += expected;
  }
  EXPECT_GT(begins, 2000);
  EXPECT_LT(begins, 18000);
}

TEST(BeginsWithTest, EveryCharacterIsComparedWithWhatItIsJoinedTo) {
  for (const std::string before : {"か", "가"}) {
    const std::vector<std::string> begin = charactersOf(before);
    for (UChar32 character = 1; character <= UCHAR_MAX_VALUE; ++character) {
      if (!u_isdefined(character) || U_IS_SURROGATE(character)) continue;
      const int8_t kind = u_charType(character);
      if (kind == U_PRIVATE_USE_CHAR) continue;
      // Han characters and syllables of Hangul, most of all there are, by a sample.
      if (kind == U_OTHER_LETTER && character > 0x3400 && character % 50 != 0) continue;
      const std::string text = before + utf8(icu::UnicodeString(character));
      ASSERT_EQ(TextServices::beginsWith(text, before), charactersOf(text).front() == begin.front())
          << before << " before U+" << std::hex << character;
    }
  }
}

TEST(BeginsWithTest, ConsonantsJoinedByALinkerAreOneCharacter) {
  EXPECT_FALSE(TextServices::beginsWith("क्ष", "क"));
  EXPECT_FALSE(TextServices::beginsWith("क्ष", "क्"));
  EXPECT_TRUE(TextServices::beginsWith("क्षक", "क्ष"));
  EXPECT_FALSE(TextServices::beginsWith("ক্ষ", "ক্"));
  EXPECT_FALSE(TextServices::beginsWith("क्\u200Dष", "क्\u200D"));
  EXPECT_TRUE(TextServices::beginsWith("क्\u200Cष", "क्\u200C"));
  // No linker, or no consonant before it, or a script that the rule leaves out.
  EXPECT_TRUE(TextServices::beginsWith("कष", "क"));
  EXPECT_TRUE(TextServices::beginsWith("अ्ष", "अ्"));
  EXPECT_TRUE(TextServices::beginsWith("ක්ෂ", "ක්"));
}

}  // namespace
}  // namespace vellora
