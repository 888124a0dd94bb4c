#include "platform/linux/text/replacement_rules.h"

#include <string>

#include <gtest/gtest.h>

namespace vellora {
namespace {

std::string applied(std::string_view rules, std::string_view text) {
  const std::optional<ReplacementRules> parsed = ReplacementRules::parse(rules);
  return parsed ? parsed->apply(text) : "refused";
}

TEST(ReplacementRulesTest, PiecesAreReplacedWhereverTheyStand) {
  EXPECT_EQ(applied("愛 > 爱;\n「 > “;\n", "我愛「愛」x"), "我爱“爱」x");
}

TEST(ReplacementRulesTest, FirstRuleThatFitsIsTaken) {
  EXPECT_EQ(applied("乾坤 > 乾坤;\n乾 > 干;", "乾坤乾杯乾"), "乾坤干杯干");
  EXPECT_EQ(applied("乾 > 干;\n乾坤 > 乾坤;", "乾坤"), "干坤");
}

TEST(ReplacementRulesTest, WhatWasReplacedIsNotReplacedAgain) {
  EXPECT_EQ(applied("愛 > 爱愛;\n爱 > 我;", "愛爱"), "爱愛我");
}

TEST(ReplacementRulesTest, PieceThatIsCutShortDoesNotFit) {
  EXPECT_EQ(applied("甚麼 > 什么;", "甚麼甚"), "什么甚");
}

TEST(ReplacementRulesTest, CharactersBesideThoseOfTheRulesStay) {
  EXPECT_EQ(applied("愛 > 爱;\n我 > 他;", "意愛懷成我戒"), "意爱懷成他戒");
  EXPECT_EQ(applied("愛 > 爱;", "\U0001F600\U0001611B愛"), "\U0001F600\U0001611B爱");
}

TEST(ReplacementRulesTest, IllFormedPartsBecomeReplacementCharacters) {
  EXPECT_EQ(applied("愛 > 爱;", "\xE6愛\xFF"), "\uFFFD爱\uFFFD");
}

TEST(ReplacementRulesTest, RulesOfAnyOtherFormAreRefused) {
  for (const char* rules : {"", "\n", "愛 > 爱", "愛 < 爱;", "愛 > ;", " > 爱;", "愛 } 我 > 爱;",
                            "愛 { 我 > 爱;", "愛 > 爱 | 我;", "[愛我] > 爱;", "$x > 爱;", "::NFD;",
                            "愛' ' > 爱;", "a > b;", "愛 → 爱;", "愛 > 爱;\n\n我 > 他;"}) {
    EXPECT_FALSE(ReplacementRules::parse(rules)) << rules;
  }
}

TEST(ReplacementRulesTest, TooManyTooLongOrTooHighOnesAreRefused) {
  const auto times = [](std::size_t count, std::string_view text) {
    std::string result;
    while (count-- > 0) result += text;
    return result;
  };
  EXPECT_TRUE(ReplacementRules::parse(times(65'535, "愛 > 爱;\n")));
  EXPECT_FALSE(ReplacementRules::parse(times(65'536, "愛 > 爱;\n")));
  EXPECT_EQ(applied("愛" + times(20'000, "我") + " > 爱;", "愛" + times(20'000, "我")), "爱");
  EXPECT_FALSE(ReplacementRules::parse("愛" + times(22'000, "我") + " > 爱;"));
  EXPECT_FALSE(ReplacementRules::parse("𠀀 > 爱;"));
}

}  // namespace
}  // namespace vellora
