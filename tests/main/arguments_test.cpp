#include "main/arguments.h"

#include <filesystem>

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

TEST(ArgumentsTest, ALocationIsAnAbsoluteValueAsItStands) {
  EXPECT_EQ(locationValue({"vellora", "--snapshot", "/a/s.json"}, "--snapshot"), "/a/s.json");
  EXPECT_EQ(locationValue({"vellora", "x", "--snapshot", "/a b/../ü.txt", "y"}, "--snapshot"),
            "/a b/../ü.txt");
  EXPECT_EQ(locationValue({"vellora", "--snapshot", "/a", "--snapshot", "/b"}, "--snapshot"), "/a");
}

TEST(ArgumentsTest, ARelativeLocationIsTakenFromTheCurrentDirectory) {
  const std::filesystem::path here = std::filesystem::current_path();
  const auto location = [](const char* value) {
    return locationValue({"vellora", "--output", value}, "--output");
  };
  EXPECT_EQ(location("s.json"), here / "s.json");
  EXPECT_EQ(location("a/../s.json"), here / "a/../s.json");
  EXPECT_EQ(location("~/s.json"), here / "~/s.json");
  EXPECT_EQ(location(""), here / ".");
}

TEST(ArgumentsTest, AFlagWithoutAValueNamesNoLocation) {
  EXPECT_EQ(locationValue({"vellora", "--snapshot"}, "--snapshot"), std::nullopt);
  EXPECT_EQ(locationValue({"vellora", "--Snapshot", "/a"}, "--snapshot"), std::nullopt);
  EXPECT_EQ(locationValue({"vellora"}, "--snapshot"), std::nullopt);
  EXPECT_EQ(locationValue({}, "--snapshot"), std::nullopt);
}

}  // namespace
}  // namespace vellora
