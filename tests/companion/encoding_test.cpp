#include "companion/lyrics/encoding.h"

#include <gtest/gtest.h>

namespace vellora::companion {
namespace {

using namespace std::string_view_literals;

TEST(Encoding, Utf8IsTakenAsItIs) {
  const auto decoded = decodeText("Déjà vu 你好");
  ASSERT_TRUE(decoded);
  EXPECT_EQ(decoded->text, "Déjà vu 你好");
  EXPECT_EQ(decoded->encoding, "UTF-8");
  EXPECT_FALSE(decoded->doubtful());
  EXPECT_EQ(decodeText("")->text, "");
}

TEST(Encoding, AByteOrderMarkDecides) {
  EXPECT_EQ(decodeText("\xEF\xBB\xBF"
                       "a")
                ->text,
            "a");
  EXPECT_EQ(decodeText("\xFF\xFE\x60\x4F\x7D\x59"sv)->text, "你好");
  EXPECT_EQ(decodeText("\xFE\xFF\x4F\x60\x59\x7D"sv)->text, "你好");
  EXPECT_EQ(decodeText("\xFF\xFE\x00\x00\x60\x4F\x00\x00"sv)->text, "你");
  EXPECT_EQ(decodeText("\x00\x00\xFE\xFF\x00\x00\x4F\x60"sv)->text, "你");
}

// 但愿人长久 千里共婵娟 in GB 18030, a few times over as a song would have it.
TEST(Encoding, ChineseIsDetected) {
  std::string bytes;
  for (int i = 0; i < 6; ++i) {
    bytes +=
        "[00:01.00]\xB5\xAB\xD4\xB8\xC8\xCB\xB3\xA4\xBE\xC3 "
        "\xC7\xA7\xC0\xEF\xB9\xB2\xE6\xBF\xBE\xEA\n";
  }
  const auto decoded = decodeText(bytes);
  ASSERT_TRUE(decoded);
  EXPECT_EQ(decoded->text.substr(0, decoded->text.find('\n')), "[00:01.00]但愿人长久 千里共婵娟");
}

// さくら さくら in Shift JIS.
TEST(Encoding, JapaneseIsDetected) {
  std::string bytes;
  for (int i = 0; i < 8; ++i) bytes += "\x82\xB3\x82\xAD\x82\xE7 \x82\xB3\x82\xAD\x82\xE7\n";
  const auto decoded = decodeText(bytes);
  ASSERT_TRUE(decoded);
  EXPECT_EQ(decoded->encoding, "Shift_JIS");
  EXPECT_EQ(decoded->text.substr(0, decoded->text.find('\n')), "さくら さくら");
}

TEST(Encoding, WesternEuropeanIsDetected) {
  const auto decoded = decodeText(
      "Ma chandelle est morte, je n'ai plus de feu. Ouvre-moi ta porte, pour l'amour de Dieu. "
      "Pr\xEAte-moi ta plume pour \xE9"
      "crire un mot. Va chez la voisine, je crois qu'elle y est.");
  ASSERT_TRUE(decoded);
  EXPECT_NE(decoded->text.find("Prête-moi"), std::string::npos);
  EXPECT_NE(decoded->text.find("écrire"), std::string::npos);
}

// A line of GB 18030 alone, which ICU takes for UTF-16 first.
TEST(Encoding, AShortTextWithoutABlankByteIsNotTakenForWideCharacters) {
  for (const char* const bytes : {"\xB5\xAB\xD4\xB8\xC8\xCB\xB3\xA4\xBE\xC3", "d\xE9j\xE0",
                                  "\x82\xB3\x82\xAD\x82\xE7\n\x82\xB3\x82\xAD\x82\xE7"}) {
    const auto decoded = decodeText(bytes);
    ASSERT_TRUE(decoded) << bytes;
    EXPECT_FALSE(decoded->encoding.starts_with("UTF-16")) << decoded->encoding;
  }
  const auto wide = decodeText("a\0b\0\n\0\xE9\0c\0d\0 \0e\0"sv);
  ASSERT_TRUE(wide);
  EXPECT_EQ(wide->encoding, "UTF-16LE");
}

TEST(Encoding, WhatIsNoTextIsRefused) {
  EXPECT_FALSE(decodeText("\0\0\0\0"sv));
  EXPECT_FALSE(decodeText("a\0b"sv));
  EXPECT_FALSE(decodeText("\xFF\xFE\x00\xD8\x61\x00"sv)) << "half of a surrogate pair";
  EXPECT_FALSE(decodeText("\xEF\xBB\xBF\xC3("sv)) << "a mark of UTF-8 before what is none";
}

}  // namespace
}  // namespace vellora::companion
