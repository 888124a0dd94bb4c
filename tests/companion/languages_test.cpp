#include "companion/library/languages.h"

#include <gtest/gtest.h>

namespace vellora::companion {
namespace {

TEST(LanguageTags, AreOfThisForm) {
  for (const char* tag : {"de", "zh", "yue", "pt-BR", "zh-Hant", "zh_TW", "sr-Latn-RS"}) {
    EXPECT_TRUE(isLanguageTag(tag)) << tag;
  }
  for (const char* none : {"", "d", "live", "1234", "d1", "de-", "-de", "de-a", "de-abcdefghi"}) {
    EXPECT_FALSE(isLanguageTag(none)) << none;
  }
}

TEST(Languages, AreMeantByTheirTags) {
  Languages languages;
  EXPECT_EQ(languages.meantBy("de"), "de");
  EXPECT_EQ(languages.meantBy("pt-BR"), "pt-BR");
}

// The names are those of ISO 639's codes in English and in the languages themselves.
TEST(Languages, AreMeantByTheirNamesInEnglishAndInThemselves) {
  Languages languages;
  for (const char* word : {"Deutsch", "deutsch", "german", "GERMAN"}) {
    EXPECT_EQ(languages.meantBy(word), "de") << word;
  }
  EXPECT_EQ(languages.meantBy("français"), "fr");
  EXPECT_EQ(languages.meantBy("Francais"), "fr");
  EXPECT_EQ(languages.meantBy("english"), "en");
  EXPECT_EQ(languages.meantBy("日本語"), "ja");
  EXPECT_EQ(languages.meantBy("中文"), "zh");
  EXPECT_EQ(languages.meantBy("Русский"), "ru");
}

TEST(Languages, AreNotMeantByOtherWords) {
  Languages languages;
  for (const char* word : {"", "live", "karaoke", "1", "...", "germanish", " Big"}) {
    EXPECT_EQ(languages.meantBy(word), std::nullopt) << word;
  }
}

}  // namespace
}  // namespace vellora::companion
