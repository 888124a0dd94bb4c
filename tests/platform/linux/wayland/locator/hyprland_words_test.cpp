#include "platform/linux/wayland/locator/hyprland_words.h"

#include <string>

#include <gtest/gtest.h>

#include "platform/linux/wayland/locator/hyprland_text.h"

namespace vellora {
namespace {

const std::string oneMonitor = "[" + hyprlandMonitor(0, "DP-1", 1) + "]";

std::vector<LocatedWindow> windowsIn(const std::string& clients, const std::string& active = "0xa",
                                     const std::string& monitors = oneMonitor) {
  const auto found = windowsInHyprlandAnswers(
      {monitors, "[" + clients + "]", R"({"address": ")" + active + R"("})"});
  EXPECT_TRUE(found.has_value());
  return found.value_or(std::vector<LocatedWindow>());
}

TEST(HyprlandWordsTest, AWindowHasItsProcessNamePlaceAndOutput) {
  const auto windows = windowsIn(hyprlandClient({.process = 11, .address = "0xa"}));
  ASSERT_EQ(windows.size(), 1U);
  LocatedWindow expected;
  expected.process = 11;
  expected.names.applicationId = "org.example.Player";
  expected.content = {22, 53, 1876, 1005};
  expected.output = "DP-1";
  expected.isActive = true;
  EXPECT_EQ(windows[0], expected);
}

TEST(HyprlandWordsTest, AnX11WindowHasAClassAndTellsScreenPositions) {
  const auto windows =
      windowsIn(hyprlandClient({.process = 11, .address = "0xa", .more = R"(, "xwayland": true)"}));
  ASSERT_EQ(windows.size(), 1U);
  EXPECT_TRUE(windows[0].tellsScreenPositions);
  EXPECT_EQ(windows[0].names.classPart, "org.example.Player");
  EXPECT_EQ(windows[0].names.applicationId, "");
}

TEST(HyprlandWordsTest, TheActiveWindowIsFirstThenThoseThatWereActiveLater) {
  const auto windows =
      windowsIn(hyprlandClient({.process = 11, .address = "0x1", .focusHistory = 2}) + "," +
                    hyprlandClient({.process = 12, .address = "0x2", .focusHistory = -1}) + "," +
                    hyprlandClient({.process = 13, .address = "0x3", .focusHistory = 0}) + "," +
                    hyprlandClient({.process = 14, .address = "0x4", .focusHistory = 1}),
                "0x4");
  ASSERT_EQ(windows.size(), 4U);
  EXPECT_EQ(windows[0].process, 14);
  EXPECT_TRUE(windows[0].isActive);
  EXPECT_EQ(windows[1].process, 13);
  EXPECT_FALSE(windows[1].isActive);
  EXPECT_EQ(windows[2].process, 11);
  EXPECT_EQ(windows[3].process, 12);
}

TEST(HyprlandWordsTest, NoneIsActiveWhereNoneHasTheKeyboard) {
  const auto found = windowsInHyprlandAnswers(
      {oneMonitor, "[" + hyprlandClient({.process = 11, .address = "0xa"}) + "]", "{}"});
  ASSERT_TRUE(found && found->size() == 1);
  EXPECT_FALSE(found->front().isActive);
}

TEST(HyprlandWordsTest, OnlyWindowsOnAWorkspaceThatIsShownAreVisible) {
  const auto isVisible = [](int workspace, const std::string& more, const std::string& monitors) {
    const auto windows = windowsIn(
        hyprlandClient({.process = 11, .address = "0xa", .workspace = workspace, .more = more}),
        "0xa", monitors);
    return windows.size() == 1 && windows[0].isVisible;
  };
  EXPECT_TRUE(isVisible(1, "", oneMonitor));
  EXPECT_FALSE(isVisible(2, "", oneMonitor));
  EXPECT_TRUE(isVisible(2, R"(, "pinned": true)", oneMonitor));
  EXPECT_FALSE(isVisible(1, R"(, "hidden": true)", oneMonitor));
  EXPECT_FALSE(isVisible(1, R"(, "mapped": false)", oneMonitor));
  const std::string two =
      "[" + hyprlandMonitor(0, "DP-1", 1) + "," + hyprlandMonitor(1, "DP-2", 2, -98) + "]";
  EXPECT_TRUE(isVisible(2, "", two));
  EXPECT_TRUE(isVisible(-98, "", two));
  EXPECT_FALSE(isVisible(-99, "", two));
  EXPECT_FALSE(isVisible(0, "", oneMonitor));
}

TEST(HyprlandWordsTest, AWindowWithoutAProcessOrAPlaceIsLeftOut) {
  for (const char* const more : {R"(, "pid": -1)", R"(, "pid": "11")", R"(, "at": [1])",
                                 R"(, "at": [1e9, 0])", R"(, "size": {"w": 1})"}) {
    EXPECT_TRUE(windowsIn(hyprlandClient({.process = 11, .address = "0xa", .more = more})).empty())
        << more;
  }
}

TEST(HyprlandWordsTest, WhatIsNoAnswerIsNone) {
  EXPECT_FALSE(windowsInHyprlandAnswers({"unknown request", "[]", "{}"}));
  EXPECT_FALSE(windowsInHyprlandAnswers({"[]", "{}", "{}"}));
  EXPECT_FALSE(windowsInHyprlandAnswers({"[]", "[]", "Invalid"}));
  EXPECT_TRUE(windowsInHyprlandAnswers({"[]", "[]", "{}"}));
}

}  // namespace
}  // namespace vellora
