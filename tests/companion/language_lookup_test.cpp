#include "companion/lyrics/language_lookup.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace vellora::companion {
namespace {

// Each list stands in the order in which its languages are taken for the wanted one.
TEST(LanguageLookup, ComesFromTheWantedTagToItsLanguageToItsOtherVariants) {
  const std::vector<std::vector<std::string>> orders{
      {"zh-Hans", "zh-hans-CN", "zh", "zh-Hant", "de"},
      {"pt-BR", "pt", "pt-PT", "p", "en"},
      {"zh-Hant-TW", "zh-Hant", "zh-Hant-HK", "zh"},
      {"de", "de-AT", "den"}};
  for (const auto& order : orders) {
    const std::string& wanted = order.front();
    EXPECT_EQ(remoteness(wanted, wanted), 0);
    for (std::size_t i = 1; i < order.size(); ++i) {
      EXPECT_LE(remoteness(order[i - 1], wanted), remoteness(order[i], wanted)) << order[i];
    }
    EXPECT_LT(remoteness(order[0], wanted), remoteness(order[1], wanted)) << wanted;
    EXPECT_LT(remoteness(order[1], wanted), remoteness(order.back(), wanted)) << wanted;
  }
}

TEST(LanguageLookup, LettersMayBeLargeOrSmall) { EXPECT_EQ(remoteness("ZH-hANS", "zh-Hans"), 0); }

TEST(LanguageLookup, WhoWantsNoneTakesEach) { EXPECT_EQ(remoteness("de", ""), 0); }

}  // namespace
}  // namespace vellora::companion
