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
}

TEST(TextLanguageTest, OtherTextsAreEnglish) {
  EXPECT_STREQ(languageTag(""), "en");
  EXPECT_STREQ(languageTag("Hello"), "en");
  EXPECT_STREQ(languageTag("مرحبا"), "en");
}

TEST(TextLanguageTest, IllFormedTextIsReadOn) {
  EXPECT_STREQ(languageTag("\xff\xe5\x9c"), "en");
  EXPECT_STREQ(languageTag("\xff\xc3 \xe6\x84\x9b"), "zh-cn");
}

}  // namespace
}  // namespace vellora
