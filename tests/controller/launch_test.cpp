#include <algorithm>

#include "controller/controller_fixture.h"

namespace vellora {
namespace {

using testing::IsEmpty;

class LaunchTest : public ControllerTest {
 protected:
  void launch() { controller->applicationDidFinishLaunching(); }
  const MenuEntry& entry(std::size_t index) { return platform.statusItem->menu.at(index); }
};

TEST_F(LaunchTest, LaunchConfiguresThePanelAddsTheItemStartsTheTimerAndTicksInThisOrder) {
  launch();
  EXPECT_EQ(platform.log,
            (Log{"configure panel", "make status item", "title 文", "tooltip Vellora", "menu of 4",
                 "timer", "hide panel", "tooltip Waiting for fresh lyrics from Tessaly"}));
  EXPECT_EQ(platform.panel->content, platform.view);
  EXPECT_FALSE(panelVisible());
  EXPECT_EQ(statusFile(), StatusFiles::waiting);
}

TEST_F(LaunchTest, TheTooltipStaysTheProgramsNameUntilThereIsAnExchangeFolder) {
  build(std::nullopt);
  launch();
  EXPECT_EQ(platform.statusItem->title, "文");
  EXPECT_EQ(platform.statusItem->toolTip, "Vellora");
}

TEST_F(LaunchTest, AUrlThatCameBeforeTheLaunchLeavesItsStatusLineInTheTooltip) {
  build(std::nullopt);
  const auto moved = makeVelloraFolder("a");
  controller->applicationOpen(
      {"tessaly-overlay://x?snapshot=" + (moved / "snapshot.json").string()});
  launch();
  EXPECT_EQ(platform.statusItem->toolTip, "Waiting for fresh lyrics from Tessaly");
  EXPECT_EQ(std::ranges::count(platform.log, "tooltip Vellora"), 1);
}

TEST_F(LaunchTest, TheTimerTicksEveryTwelveHundredths) {
  launch();
  ASSERT_EQ(platform.app.timers.size(), 1u);
  EXPECT_EQ(platform.app.timers[0]->interval, 0.12);
  writeSnapshot();
  platform.app.fireTimers();
  EXPECT_EQ(statusFile(), StatusFiles::ready);
}

TEST_F(LaunchTest, TheTimerDoesNotKeepTheControllerAndStopsWithIt) {
  launch();
  const std::weak_ptr<OverlayDelegate> observer = controller;
  const auto fire = platform.app.timers[0]->fire;
  controller.reset();
  EXPECT_TRUE(observer.expired());
  EXPECT_TRUE(platform.app.timers[0]->stopped);
  platform.log.clear();
  fire();
  EXPECT_THAT(platform.log, IsEmpty());
}

TEST_F(LaunchTest, TheMenuIsToTheLetter) {
  launch();
  ASSERT_EQ(platform.statusItem->menu.size(), 4u);
  EXPECT_EQ(entry(0).title, "Vellora • Experimental");
  EXPECT_EQ(entry(0).keyEquivalent, "");
  EXPECT_FALSE(entry(0).separator);
  EXPECT_TRUE(entry(1).separator);
  EXPECT_EQ(entry(2).title, "Allow lyric alignment…");
  EXPECT_EQ(entry(2).keyEquivalent, "");
  EXPECT_FALSE(entry(2).separator);
  EXPECT_EQ(entry(3).title, "Stop overlay");
  EXPECT_EQ(entry(3).keyEquivalent, "q");
  EXPECT_FALSE(entry(3).separator);
}

TEST_F(LaunchTest, TheFirstEntryAndTheSeparatorCannotBeChosen) {
  launch();
  EXPECT_FALSE(entry(0).action);
  EXPECT_FALSE(entry(1).action);
  EXPECT_TRUE(entry(2).action);
  EXPECT_TRUE(entry(3).action);
}

TEST_F(LaunchTest, ChoosingTheAllowEntryTwiceAsksTwiceAndKeepsTheTickFromAsking) {
  launch();
  entry(2).action();
  entry(2).action();
  EXPECT_EQ(count("requestTrust"), 2u);
  EXPECT_TRUE(controller->requestedAccess);
  platform.accessibility->trusted = false;
  writeSnapshot();
  controller->tick();
  EXPECT_EQ(count("requestTrust"), 2u);
  EXPECT_EQ(statusFile(), StatusFiles::allow);
}

TEST_F(LaunchTest, TheAllowEntryAsksAgainAfterTheTickHasAsked) {
  launch();
  platform.accessibility->trusted = false;
  writeSnapshot();
  controller->tick();
  entry(2).action();
  EXPECT_EQ(count("requestTrust"), 2u);
}

TEST_F(LaunchTest, TheStopEntryStops) {
  launch();
  entry(3).action();
  EXPECT_EQ(platform.app.terminations, 1);
  EXPECT_EQ(statusFile(), StatusFiles::stopped);
}

TEST_F(LaunchTest, MenuActionsOutliveTheController) {
  launch();
  const auto allow = entry(2).action;
  const auto stop = entry(3).action;
  controller.reset();
  allow();
  stop();
  EXPECT_EQ(count("requestTrust"), 0u);
  EXPECT_EQ(platform.app.terminations, 0);
}

TEST_F(LaunchTest, AnItemWithoutAButtonGetsAMenuButNoTitleOrTooltip) {
  platform.statusItemHasButton = false;
  launch();
  controller->writeStatus("Another line", false);
  EXPECT_EQ(platform.statusItem->title, "");
  EXPECT_EQ(platform.statusItem->toolTip, "");
  EXPECT_EQ(platform.statusItem->menu.size(), 4u);
  EXPECT_EQ(count("title "), 0u);
}

TEST_F(LaunchTest, WithoutAPlaceForAnItemTheProgramRunsWithoutOne) {
  platform.statusItemHasPlace = false;
  launch();
  EXPECT_EQ(controller->statusItem, nullptr);
  EXPECT_EQ(platform.app.timers.size(), 1u);
  EXPECT_EQ(statusFile(), StatusFiles::waiting);
}

TEST_F(LaunchTest, ASecondLaunchReleasesTheFirstItemAndTimer) {
  launch();
  launch();
  EXPECT_EQ(count("status item gone"), 1u);
  ASSERT_EQ(platform.app.timers.size(), 2u);
  EXPECT_TRUE(platform.app.timers[0]->stopped);
  EXPECT_FALSE(platform.app.timers[1]->stopped);
}

TEST_F(LaunchTest, ConfiguringThePanelPutsTheCanvasIntoItWithoutShowingIt) {
  controller->configurePanel();
  EXPECT_EQ(platform.log, (Log{"configure panel"}));
  EXPECT_EQ(platform.panel->content, platform.view);
}

}  // namespace
}  // namespace vellora
