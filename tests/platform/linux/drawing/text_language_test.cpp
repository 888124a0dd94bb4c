#include "platform/linux/drawing/text_language.h"

#include <gtest/gtest.h>

namespace vellora {
namespace {

TEST(TextLanguageTest, HanCharactersFollowTheScriptBesideThem) {
  EXPECT_STREQ(languageTag("夜空に消える"), "ja");
  EXPECT_STREQ(languageTag("東京タワー"), "ja");
  EXPECT_STREQ(languageTag("漢字와 한글"), "ko");
  EXPECT_STREQ(languageTag("我愿意为你"), "zh-cn");
  EXPECT_STREQ(languageTag("OK 好"), "zh-cn");
  EXPECT_STREQ(languageTag("骨ㄍㄨˇ"), "zh-tw");
  EXPECT_STREQ(languageTag("ㄍㄨˇ"), "zh-tw");
}

TEST(TextLanguageTest, WhatFoldingWouldChangeIsTaiwans) {
  for (const char* text : {"我願意為你", "遊", "看著你", "然後", "甚麼", "佢哋話我愛你", "心裏"}) {
    EXPECT_STREQ(languageTag(text), "zh-tw") << text;
  }
}

TEST(TextLanguageTest, WhatOnlyTraditionalChineseHasIsTaiwansThoughFoldingKeepsIt) {
  EXPECT_STREQ(languageTag("妳好"), "zh-tw");
  EXPECT_STREQ(languageTag("佢哋"), "zh-tw");
}

TEST(TextLanguageTest, KanaAndHangulCountBeforeTraditionalCharacters) {
  EXPECT_STREQ(languageTag("舊い櫻の國"), "ja");
  EXPECT_STREQ(languageTag("愛ㄞ、ラブ"), "ja");
  EXPECT_STREQ(languageTag("愛와 平和"), "ko");
}

TEST(TextLanguageTest, SimplifiedTextMayHaveWhatFoldingChanges) {
  for (const char* text : {"他说：「你好」", "俱乐部", "我们的慰藉", "从大阪来"}) {
    EXPECT_STREQ(languageTag(text), "zh-cn") << text;
  }
}

TEST(TextLanguageTest, MixedTextIsWhatMoreOfItIs) {
  EXPECT_STREQ(languageTag("我们爱说「愛」"), "zh-cn");
  EXPECT_STREQ(languageTag("我們愛說「爱」"), "zh-tw");
  EXPECT_STREQ(languageTag("我爱你／我愛你"), "zh-tw");
}

TEST(TextLanguageTest, KanjiAloneAreJapaneseWhereNeitherChineseHasThem) {
  for (const char* text : {"夜桜", "恋愛", "人々", "天気図"}) {
    EXPECT_STREQ(languageTag(text), "ja") << text;
  }
  // Common kanji as well, but every one of them Chinese too.
  EXPECT_STREQ(languageTag("東京"), "zh-tw");
  EXPECT_STREQ(languageTag("学校"), "zh-cn");
  EXPECT_STREQ(languageTag("二〇〇八年"), "zh-cn");
  // Others are among them.
  EXPECT_STREQ(languageTag("你的桜"), "zh-cn");
}

TEST(TextLanguageTest, OneLineWithKanaTellsForAllLinesOfAText) {
  EXPECT_STREQ(languageTag("東京\n夜空に消える"), "ja");
  EXPECT_STREQ(languageTag("夜空に消える\n東京"), "ja");
}

TEST(TextLanguageTest, HanCharactersAloneAreOfTheLanguageOfTheirTranslation) {
  EXPECT_STREQ(languageTag("夜空", "ja"), "ja");
  EXPECT_STREQ(languageTag("東京", "ja"), "ja");
  EXPECT_STREQ(languageTag("愛", "ko"), "ko");
  EXPECT_STREQ(languageTag("在月光下，我的朋友，", "zh-tw"), "zh-tw");
  EXPECT_STREQ(languageTag("大阪", "zh-cn"), "zh-cn");
  EXPECT_STREQ(languageTag("夜空", "en"), "zh-cn");
}

TEST(TextLanguageTest, TheTranslationHasNoSayOverCharactersThatItsLanguageHasNot) {
  EXPECT_STREQ(languageTag("我们爱你", "ja"), "zh-cn");
  EXPECT_STREQ(languageTag("我们爱你", "zh-tw"), "zh-cn");
  EXPECT_STREQ(languageTag("妳好", "zh-cn"), "zh-tw");
  EXPECT_STREQ(languageTag("我们", "ko"), "zh-cn");
}

TEST(TextLanguageTest, TheTranslationHasNoSayOverTextsThatTellTheirLanguage) {
  EXPECT_STREQ(languageTag("夜の空", "zh-cn"), "ja");
  EXPECT_STREQ(languageTag("漢字와 한글", "ja"), "ko");
  EXPECT_STREQ(languageTag("骨ㄍㄨˇ", "ja"), "zh-tw");
  EXPECT_STREQ(languageTag("Hello", "ja"), "en");
}

TEST(TextLanguageTest, ATranslationIsOfTheLanguageThatItsTextsTell) {
  EXPECT_STREQ(commonLanguage({}), "en");
  EXPECT_STREQ(commonLanguage({"Hello", "", "♪"}), "en");
  EXPECT_STREQ(commonLanguage({"夜空", "夢の中で", "東京"}), "ja");
  EXPECT_STREQ(commonLanguage({"愛", "사랑", "Hello", "Hello"}), "ko");
  EXPECT_STREQ(commonLanguage({"我的朋友，", "我願意", "月光下"}), "zh-tw");
  EXPECT_STREQ(commonLanguage({"我的朋友，", "我愿意", "月光下"}), "zh-cn");
  // A Chinese translation may quote a word now and then.
  EXPECT_STREQ(commonLanguage({"我愿意", "我们", "爱", "月光", "在「サヨナラ」之后"}), "zh-cn");
}

TEST(TextLanguageTest, OnlySoManyTextsOfATranslationAreLookedAt) {
  std::vector<std::string_view> texts(mostTexts - 1, "我愿意");
  texts.insert(texts.begin(), 1000, "Hello");
  texts.insert(texts.end(), mostTexts, "夢の中で");
  EXPECT_STREQ(commonLanguage(texts), "zh-cn");
}

TEST(TextLanguageTest, EquivalentTextsHaveOneLanguage) {
  // 神 (U+FA19) is another spelling of 神, 樂 (U+F914) of 樂.
  EXPECT_STREQ(languageTag("\uF914"), languageTag("樂"));
  EXPECT_STREQ(languageTag("\uF914"), "zh-tw");
  EXPECT_STREQ(languageTag("\uFA19"), languageTag("神"));
  // か with U+3099 is が, ᄒ with ᅡ and ᆫ is 한.
  EXPECT_STREQ(languageTag("愛か\u3099"), "ja");
  EXPECT_STREQ(languageTag("愛\u1112\u1161\u11AB"), "ko");
}

TEST(TextLanguageTest, OtherTextsAreEnglish) {
  EXPECT_STREQ(languageTag(""), "en");
  EXPECT_STREQ(languageTag("Hello"), "en");
  EXPECT_STREQ(languageTag("مرحبا"), "en");
  EXPECT_STREQ(languageTag("「Hello」"), "en");
}

TEST(TextLanguageTest, IllFormedTextIsReadOn) {
  EXPECT_STREQ(languageTag("\xff\xe5\x9c"), "en");
  EXPECT_STREQ(languageTag("\xff\xc3 \xe6\x84\x9b"), "zh-tw");
  EXPECT_STREQ(languageTag("\xff\xc3 \xe7\x88\xb1"), "zh-cn");
}

}  // namespace
}  // namespace vellora
