#include "platform/linux/wayland/locator/kwin_report.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/linux/wayland/locator/fake_kwin.h"

namespace vellora {
namespace {

std::string list(const std::string& windows) { return "[" + windows + "]"; }

// As KWin 5.27 told of a GTK 3 window with a header bar of its own and the shadow around it.
TEST(KWinReportTest, TheContentIsWithoutTheShadowThatTheProgramDraws) {
  const auto windows = windowsInKWinReport(
      list(kwinWindow(29668, "org.test.Gtk3", true, "[440,226,400,347]", "[414,203,452,399]")));
  ASSERT_TRUE(windows && windows->size() == 1);
  const LocatedWindow& window = windows->front();
  EXPECT_EQ(window.process, 29668);
  EXPECT_EQ(window.names, (WindowNames{.classPart = {}, .applicationId = "org.test.Gtk3"}));
  EXPECT_EQ(window.content, Rect({440, 226, 400, 347}));
  EXPECT_EQ(window.surface, Rect({414, 203, 452, 399}));
  EXPECT_TRUE(window.isActive && window.isVisible);
  EXPECT_FALSE(window.tellsScreenPositions);
}

// A Qt window, whose title bar is KWin's.
TEST(KWinReportTest, TheContentIsWithoutTheTitleBarThatKWinDraws) {
  const auto windows = windowsInKWinReport(
      list(kwinWindow(29671, "org.test.Qt5", true, "[440,231,400,337]", "[440,268,400,300]")));
  ASSERT_TRUE(windows && windows->size() == 1);
  EXPECT_EQ(windows->front().content, Rect({440, 268, 400, 300}));
}

TEST(KWinReportTest, AnX11WindowsClassComesInLowerCase) {
  const auto windows =
      windowsInKWinReport(list(kwinWindow(1, "com.apple.music", true, "[0,0,9,9]", "[0,0,9,9]",
                                          R"("x11":true,"visible":true,"order":1)")));
  ASSERT_TRUE(windows && windows->size() == 1);
  EXPECT_TRUE(windows->front().tellsScreenPositions);
  EXPECT_TRUE(windows->front().areNamesInLowerCase);
  EXPECT_EQ(windows->front().names.classPart, "com.apple.music");
}

TEST(KWinReportTest, TheActiveWindowComesFirstAndThenTheHigherOnes) {
  const auto at = [](int order) {
    return R"("x11":false,"visible":true,"order":)" + std::to_string(order);
  };
  const auto windows =
      windowsInKWinReport(list(kwinWindow(1, "a", false, "[0,0,9,9]", "[0,0,9,9]", at(1)) + "," +
                               kwinWindow(2, "a", true, "[0,0,9,9]", "[0,0,9,9]", at(2)) + "," +
                               kwinWindow(3, "a", false, "[0,0,9,9]", "[0,0,9,9]", at(3))));
  ASSERT_TRUE(windows.has_value());
  std::vector<int> processes;
  for (const LocatedWindow& one : *windows) processes.push_back(one.process);
  EXPECT_EQ(processes, std::vector<int>({2, 3, 1}));
}

TEST(KWinReportTest, WhatIsNoReportIsNone) {
  for (const char* const text : {"", "[", "{}", "null", "7", "\"[]\"", "[1"}) {
    EXPECT_FALSE(windowsInKWinReport(text).has_value()) << text;
  }
}

TEST(KWinReportTest, AWindowThatMakesNoSenseIsPassedOver) {
  const std::string windows[] = {
      "null",
      "[]",
      kwinWindow(0, "a", true, "[0,0,9,9]", "[0,0,9,9]"),
      kwinWindow(-1, "a", true, "[0,0,9,9]", "[0,0,9,9]"),
      kwinWindow(5, "a", true, "[0,0,9]", "[0,0,9,9]"),
      kwinWindow(5, "a", true, "[0,0,9,9]", "[0,0,\"9\",9]"),
      kwinWindow(5, "a", true, "[0,0,1e9,9]", "[0,0,9,9]"),
  };
  for (const std::string& window : windows) {
    const auto found = windowsInKWinReport(
        list(window + "," + kwinWindow(6, "b", false, "[0,0,9,9]", "[0,0,9,9]")));
    ASSERT_TRUE(found.has_value()) << window;
    ASSERT_EQ(found->size(), 1U) << window;
    EXPECT_EQ(found->front().process, 6);
  }
}

}  // namespace
}  // namespace vellora
