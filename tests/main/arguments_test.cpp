#include "main/arguments.h"

#include <gtest/gtest.h>

namespace vellora {
namespace {

TEST(ArgumentsTest, AFlagIsFoundAnywhereTheProgramPathIncluded) {
  EXPECT_TRUE(hasFlag({"vellora", "x", "--diagnose"}, "--diagnose"));
  EXPECT_TRUE(hasFlag({"--diagnose"}, "--diagnose"));
}

TEST(ArgumentsTest, AFlagIsFoundOnlyExactly) {
  EXPECT_FALSE(hasFlag({"vellora", "--diagnosed", "-diagnose", "--Diagnose", "--diagnose=1", ""},
                       "--diagnose"));
  EXPECT_FALSE(hasFlag({}, "--diagnose"));
}

TEST(ArgumentsTest, AValueIsWhatFollowsTheFirstOccurrence) {
  EXPECT_EQ(flagValue({"vellora", "--output", "a", "--output", "b"}, "--output"), "a");
  EXPECT_EQ(flagValue({"--output", "a"}, "--output"), "a");
  EXPECT_EQ(flagValue({"vellora", "--output", ""}, "--output"), "");
}

TEST(ArgumentsTest, AFlagCanItselfBeAValue) {
  EXPECT_EQ(flagValue({"vellora", "--output", "--output"}, "--output"), "--output");
  EXPECT_EQ(flagValue({"vellora", "--output", "--diagnose"}, "--output"), "--diagnose");
}

TEST(ArgumentsTest, AFlagAtTheEndHasNoValue) {
  EXPECT_EQ(flagValue({"vellora", "--output"}, "--output"), std::nullopt);
  EXPECT_EQ(flagValue({"vellora"}, "--output"), std::nullopt);
  EXPECT_EQ(flagValue({}, "--output"), std::nullopt);
}

}  // namespace
}  // namespace vellora
