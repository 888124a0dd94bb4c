#include "matching/normalization.h"

#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/utf8.h"
#include "platform/text_services.h"

namespace vellora::OverlayMatching {
namespace {

struct Example {
  std::string text;
  std::string key;
};

TEST(NormalizationTest, WordsRunTogetherInLowerCaseWithoutPunctuation) {
  const std::vector<Example> examples = {
      {"Hello, World!", "helloworld"},
      {"  Don’t   stop  ", "dontstop"},
      {"Café Déjà-Vu", "cafedejavu"},
      {"ＡＢＣ　１２３", "abc123"},
      {"我愛你", "我爱你"},
      {"♪ ♫ ♬", ""},
      {"", ""},
      {"line\nbreak\tand\u2028more", "linebreakandmore"},
  };
  for (const Example& example : examples) {
    EXPECT_EQ(normalized(example.text), example.key) << example.text;
  }
}

TEST(NormalizationTest, TextWithoutLettersMarksAndDigitsHasAnEmptyKey) {
  for (const std::string text : {"?!… — “”", "♪", "+=<>|~^", "🎵🎶 💔", "   ", "\n\r\n\t",
                                 "\u3000\u200B\u200D", "\u0007\u001B"}) {
    EXPECT_EQ(normalized(text), "") << text;
  }
}

TEST(NormalizationTest, KeyOfAKeyIsTheKey) {
  for (const std::string text :
       {"Hello, World!", "Café Déjà-Vu", "ＡＢＣ　１２３", "我愛你", "がぎぐ ガギグ", "사랑해 Ünü",
        "Straße İstanbul", "مَرْحَبًا", "שָׁלוֹם", "नमस्ते", "สวัสดี", "Ⅷ ½ ²"}) {
    const std::string key = normalized(text);
    EXPECT_FALSE(key.empty()) << text;
    EXPECT_EQ(normalized(key), key) << text;
  }
}

TEST(NormalizationTest, TraditionalAndSimplifiedFormsHaveTheSameKey) {
  EXPECT_EQ(normalized("後來的我們，面對著風"), normalized("后来的我们 面对着风"));
  EXPECT_EQ(normalized("漢語"), normalized("汉语"));
  EXPECT_NE(normalized("漢語"), normalized("汉字"));
}

TEST(NormalizationTest, CharactersAreMadeSimplifiedBeforeMarksAreDropped) {
  // 甚麼 as one word becomes 什么; the mark keeps its two characters apart until they have changed.
  EXPECT_EQ(normalized("甚麼"), "什么");
  EXPECT_EQ(normalized("甚\u0301麼"), "甚么");
}

TEST(NormalizationTest, KanaAndHangulPassThroughTheScriptFoldingUnchanged) {
  for (const std::string text : {"ひらがな カタカナ ー", "사랑해요 그대를", "がぎぐげご"}) {
    EXPECT_EQ(TextServices::simplified(text), text);
  }
  EXPECT_EQ(normalized("ひらがな、カタカナ！"), "ひらがなカタカナ");
  EXPECT_EQ(normalized("사랑해요 그대를"), "사랑해요그대를");
}

TEST(NormalizationTest, CaseAccentsWidthSpacingAndPunctuationDoNotCount) {
  const std::string key = normalized("naive cafe 12");
  for (const std::string text :
       {"NAIVE CAFE 12", "naïve café 12", "NAÏVE CAFÉ 12", "nai\u0308ve cafe\u0301 12",
        "NAI\u0308VE CAFE\u0301 12", "ｎａｉｖｅ　ｃａｆｅ　１２", "ＮＡＩＶＥ　ＣＡＦＥ　１２",
        " naive  cafe\n12 ", "‘Naive’—(café): 12!"}) {
    EXPECT_EQ(normalized(text), key) << text;
  }
}

TEST(NormalizationTest, DigitsAreKept) {
  EXPECT_EQ(normalized("Track 2"), "track2");
  EXPECT_EQ(normalized("Track 2"), normalized("track2"));
  EXPECT_NE(normalized("Track 2"), normalized("Track"));
}

TEST(NormalizationTest, MarksOfScriptsThatNeedThemAreKept) {
  EXPECT_NE(normalized("が"), normalized("か"));
  EXPECT_EQ(normalized("が"), "が");
  EXPECT_EQ(normalized("สวัสดี"), "สวัสดี");
  EXPECT_NE(normalized("שָׁלוֹם"), normalized("שלום"));
}

TEST(NormalizationTest, OfEachCharacterExactlyLettersMarksAndNumbersAreKept) {
  for (char32_t character = 1; character <= 0x10FFFF; ++character) {
    if (character >= 0xD800 && character <= 0xDFFF) continue;
    std::string text;
    appendCharacter(text, character);
    text += "我";
    const std::string simplified = TextServices::simplified(text).value_or(text);
    const std::string folded = TextServices::folded(simplified);
    std::string key;
    for (std::size_t at = 0; at < folded.size();) {
      const std::size_t begin = at;
      if (TextServices::isAlphanumeric(nextCharacter(folded, at))) {
        key += folded.substr(begin, at - begin);
      }
    }
    ASSERT_EQ(normalized(text), key) << std::hex << static_cast<std::uint32_t>(character);
  }
}

TEST(NormalizationTest, IllFormedBytesAreDropped) {
  EXPECT_EQ(normalized("a\xFF"
                       "b\xC3"),
            "ab");
}

}  // namespace
}  // namespace vellora::OverlayMatching
