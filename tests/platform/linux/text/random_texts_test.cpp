// The text services on random texts of all scripts, beside the rules read plainly: every question
// asked of ICU for every character, and nothing remembered.
#include <iterator>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include "platform/text_services.h"

namespace vellora {
namespace {

using Random = std::mt19937;

std::size_t below(Random& random, std::size_t count) {
  return std::uniform_int_distribution<std::size_t>(0, count - 1)(random);
}

icu::UnicodeString normalized(const icu::Normalizer2* form, const icu::UnicodeString& text) {
  UErrorCode error = U_ZERO_ERROR;
  return form->normalize(text, error);
}

icu::UnicodeString decomposed(const icu::UnicodeString& text) {
  UErrorCode error = U_ZERO_ERROR;
  return normalized(icu::Normalizer2::getNFDInstance(error), text);
}

icu::UnicodeString compatible(const icu::UnicodeString& text) {
  UErrorCode error = U_ZERO_ERROR;
  return normalized(icu::Normalizer2::getNFKDInstance(error), text);
}

std::string utf8(const icu::UnicodeString& text) {
  std::string result;
  return text.toUTF8String(result);
}

constexpr UChar32 beyondMarkedScripts = 0x510;

bool extends(UChar32 character) {
  if (character < 0x300 || character == 0x200D) return false;
  return u_hasBinaryProperty(character, UCHAR_GRAPHEME_EXTEND) != 0 ||
         (character >= 0x1F3FB && character <= 0x1F3FF);
}

icu::UnicodeString foldedBase(UChar32 character) {
  icu::UnicodeString base(character);
  if (character >= 0xFF00 && character <= 0xFFEF && compatible(base).countChar32() == 1) {
    base = compatible(base);
  }
  if (decomposed(base).char32At(0) < beyondMarkedScripts) base = decomposed(base).char32At(0);
  return base.foldCase(U_FOLD_CASE_DEFAULT);
}

std::string plainlyFolded(const icu::UnicodeString& text) {
  icu::UnicodeString result;
  for (int32_t at = 0; at < text.length();) {
    const UChar32 character = text.char32At(at);
    at = text.moveIndex32(at, 1);
    const icu::UnicodeString base = foldedBase(character);
    result += base;
    icu::UnicodeString extenders;
    for (; at < text.length() && extends(text.char32At(at)); at = text.moveIndex32(at, 1)) {
      extenders.append(text.char32At(at));
    }
    if (base.char32At(0) < beyondMarkedScripts || extenders.isEmpty()) continue;
    const bool isUnchanged = base == icu::UnicodeString(character);
    if (isUnchanged && extenders.char32At(0) < beyondMarkedScripts) extenders.remove(0, 1);
    result += decomposed(extenders);
  }
  return utf8(result);
}

// A few characters of neighbouring scripts, as texts have them, many marks among them.
icu::UnicodeString randomText(Random& random) {
  static const std::vector<std::pair<UChar32, UChar32>> ranges = {
      {0x20, 0x7E},       {0xC0, 0x24F},    {0x300, 0x36F},    {0x370, 0x3FF},   {0x400, 0x52F},
      {0x530, 0x58F},     {0x590, 0x5FF},   {0x600, 0x6FF},    {0x700, 0x8FF},   {0x900, 0x97F},
      {0x980, 0xA7F},     {0xB00, 0xC7F},   {0xD00, 0xDFF},    {0xE00, 0xE7F},   {0xF00, 0xFFF},
      {0x1000, 0x10FF},   {0x1100, 0x11FF}, {0x1DC0, 0x1FFF},  {0x200B, 0x200F}, {0x20D0, 0x20F0},
      {0x3000, 0x30FF},   {0x3099, 0x309C}, {0x302A, 0x302F},  {0x3100, 0x33FF}, {0x3400, 0x9FFF},
      {0xAC00, 0xD7A3},   {0xF900, 0xFAFF}, {0xFE00, 0xFE2F},  {0xFF00, 0xFFEF}, {0x1F3F0, 0x1F3FF},
      {0x2F800, 0x2FA1D}, {0x1, 0xD7FF},    {0xE000, 0x10FFFF}};
  icu::UnicodeString text;
  const std::size_t scripts[] = {below(random, ranges.size()), below(random, ranges.size()),
                                 below(random, ranges.size())};
  for (std::size_t left = 1 + below(random, 10); left > 0; --left) {
    const auto [lowest, highest] = ranges[scripts[below(random, std::size(scripts))]];
    const auto count = static_cast<std::size_t>(highest - lowest + 1);
    text.append(lowest + static_cast<UChar32>(below(random, count)));
  }
  return text;
}

TEST(RandomTextsTest, AreFoldedByTheRule) {
  Random random(1);
  for (int round = 0; round < 30'000; ++round) {
    const icu::UnicodeString text = randomText(random);
    ASSERT_EQ(TextServices::folded(utf8(text)), plainlyFolded(text)) << utf8(text);
  }
}

TEST(RandomTextsTest, OfTheScriptsThatAreRememberedAreFoldedByTheRule) {
  Random random(2);
  for (int round = 0; round < 30'000; ++round) {
    icu::UnicodeString text;
    const auto block = static_cast<UChar32>(0x590 + 0x80 * below(random, 22));
    for (std::size_t left = 1 + below(random, 8); left > 0; --left) {
      text.append(below(random, 8) == 0 ? 0x4E00
                                        : block + static_cast<UChar32>(below(random, 0x80)));
    }
    ASSERT_EQ(TextServices::folded(utf8(text)), plainlyFolded(text)) << utf8(text);
    ASSERT_EQ(TextServices::canonicalForm(utf8(decomposed(text))),
              TextServices::canonicalForm(utf8(text)))
        << utf8(text);
  }
}

TEST(RandomTextsTest, HaveTheCanonicalFormThatUnicodeNames) {
  UErrorCode error = U_ZERO_ERROR;
  const icu::Normalizer2* const composed = icu::Normalizer2::getNFCInstance(error);
  ASSERT_TRUE(U_SUCCESS(error));
  Random random(3);
  for (int round = 0; round < 30'000; ++round) {
    icu::UnicodeString text = randomText(random);
    if (round % 3 == 0) text = decomposed(text);
    ASSERT_EQ(TextServices::canonicalForm(utf8(text)), utf8(normalized(composed, text)))
        << utf8(text);
  }
}

TEST(RandomTextsTest, ThatAreNotUtf8AreReadWithReplacementCharacters) {
  UErrorCode error = U_ZERO_ERROR;
  const icu::Normalizer2* const composed = icu::Normalizer2::getNFCInstance(error);
  ASSERT_TRUE(U_SUCCESS(error));
  Random random(4);
  for (int round = 0; round < 10'000; ++round) {
    std::string bytes = utf8(randomText(random));
    for (std::size_t left = 1 + below(random, 3); left > 0; --left) {
      bytes[below(random, bytes.size())] = static_cast<char>(below(random, 256));
    }
    const icu::UnicodeString text = icu::UnicodeString::fromUTF8(bytes);
    ASSERT_EQ(TextServices::folded(bytes), plainlyFolded(text));
    ASSERT_EQ(TextServices::canonicalForm(bytes), utf8(normalized(composed, text)));
  }
}

}  // namespace
}  // namespace vellora
