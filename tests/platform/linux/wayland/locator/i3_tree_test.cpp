#include "platform/linux/wayland/locator/i3_tree.h"

#include <string>

#include <gtest/gtest.h>

#include "platform/linux/wayland/locator/i3_text.h"

namespace vellora {
namespace {

using Windows = std::vector<LocatedWindow>;

// As sway 1.7 tells of a GTK 3 window that is tiled alone, with a title bar and borders of 2.
TEST(I3TreeTest, AWindowIsItsContainerWithoutBordersAndTitleBar) {
  const auto windows = windowsInI3Tree(i3OneWindow(14895));
  ASSERT_TRUE(windows.has_value());
  EXPECT_EQ(*windows, Windows({{.process = 14895,
                                .names = {.classPart = {}, .applicationId = "org.example.Player"},
                                .content = {2, 27, 1276, 771},
                                .surface = std::nullopt,
                                .output = "DP-1",
                                .isActive = true}}));
}

TEST(I3TreeTest, AWindowUnderXwaylandTellsTheScreensPositions) {
  const auto windows = windowsInI3Tree(
      i3Tree(R"({"id":8,"type":"con","pid":12,"focused":true,"visible":true,"app_id":null,)"
             R"("shell":"xwayland","window_properties":{"class":"Player","instance":"player"},)"
             R"("rect":)" +
             i3Rect(0, 27, 1280, 773) + R"(,"window_rect":)" + i3Rect(2, 0, 1276, 771) + "}"));
  ASSERT_TRUE(windows && windows->size() == 1);
  EXPECT_TRUE(windows->front().tellsScreenPositions);
  EXPECT_EQ(windows->front().names, (WindowNames{.classPart = "Player", .applicationId = {}}));
}

TEST(I3TreeTest, TheActiveWindowComesFirstAndThenThoseThatWereActiveLater) {
  const auto window = [](int id, bool isFocused) {
    return i3Window(id, id * 10, "a", isFocused, i3Rect(0, 0, 9, 9), i3Rect(0, 0, 9, 9));
  };
  const auto windows =
      windowsInI3Tree(i3Tree(window(4, false) + "," + window(5, false) + "," + window(6, true),
                             window(7, false), "7,5,4,6"));
  ASSERT_TRUE(windows.has_value());
  std::vector<int> processes;
  for (const LocatedWindow& one : *windows) processes.push_back(one.process);
  EXPECT_EQ(processes, std::vector<int>({60, 70, 50, 40}));
}

TEST(I3TreeTest, AWindowBehindATabOrOnAnotherWorkspaceIsNotVisible) {
  const auto windows = windowsInI3Tree(
      i3Tree(i3Window(4, 1, "a", false, i3Rect(0, 0, 9, 9), i3Rect(0, 0, 9, 9), false)));
  ASSERT_TRUE(windows && windows->size() == 1);
  EXPECT_FALSE(windows->front().isVisible);
}

TEST(I3TreeTest, AnEmptyWorkspaceHasNoWindow) {
  const auto windows = windowsInI3Tree(i3Tree(""));
  ASSERT_TRUE(windows.has_value());
  EXPECT_TRUE(windows->empty());
}

TEST(I3TreeTest, WhatIsNoTreeIsNone) {
  for (const char* const text : {"", "{", "[]", "null", "{}", R"({"type":"con"})", R"({"type":3})",
                                 "\xff\xfe", R"({"type":"root"} and more)"}) {
    EXPECT_FALSE(windowsInI3Tree(text).has_value()) << text;
  }
}

TEST(I3TreeTest, ANodeWhoseFieldsMakeNoSenseIsNoWindow) {
  for (const char* const process : {"0", "-4", "1.5", "\"7\"", "4294967296", "1e99", "null"}) {
    const std::string node = std::string(R"({"id":4,"pid":)") + process + R"(,"rect":)" +
                             i3Rect(0, 0, 9, 9) + R"(,"window_rect":)" + i3Rect(0, 0, 9, 9) + "}";
    const auto windows = windowsInI3Tree(i3Tree(node));
    ASSERT_TRUE(windows.has_value()) << process;
    EXPECT_TRUE(windows->empty()) << process;
  }
  for (const char* const rect :
       {"null", "[]", R"({"x":0,"y":0,"width":9})", R"({"x":1e300,"y":0,"width":9,"height":9})"}) {
    const std::string node = std::string(R"({"id":4,"pid":5,"rect":)") + rect +
                             R"(,"window_rect":)" + i3Rect(0, 0, 9, 9) + "}";
    const auto windows = windowsInI3Tree(i3Tree(node));
    ASSERT_TRUE(windows.has_value()) << rect;
    EXPECT_TRUE(windows->empty()) << rect;
  }
}

TEST(I3TreeTest, ATreeOfAnyDepthComesToAnEnd) {
  constexpr int levels = 100000;
  std::string text = R"({"type":"root","nodes":[)";
  for (int i = 0; i < levels; ++i) text += R"({"nodes":[)";
  for (int i = 0; i < levels; ++i) text += "]}";
  text += "]}";
  const auto windows = windowsInI3Tree(text);
  ASSERT_TRUE(windows.has_value());
  EXPECT_TRUE(windows->empty());
}

}  // namespace
}  // namespace vellora
