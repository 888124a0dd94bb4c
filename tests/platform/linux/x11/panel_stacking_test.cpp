#include <algorithm>
#include <csignal>
#include <memory>

#include <gtest/gtest.h>

#include "panel_fixture.h"
#include "platform/linux/x11/stacking_guard.h"

namespace vellora {
namespace {

class PanelStackingTest : public PanelFixture {
 protected:
  bool isAbove(xcb_window_t upper, xcb_window_t lower) {
    const auto order = client.topLevels();
    return std::find(order.begin(), order.end(), upper) >
           std::find(order.begin(), order.end(), client.topLevelOf(lower));
  }

  void startWindowManager() {
    windowManager = std::make_unique<ChildProgram>(
        std::vector<std::string>{"openbox", "--sm-disable"}, server.display());
    ASSERT_TRUE(runLoopUntil(
        [&] { return !client.numbers(client.root(), "_NET_SUPPORTING_WM_CHECK").empty(); }));
  }

  xcb_window_t activeWindow() {
    const auto active = client.numbers(client.root(), "_NET_ACTIVE_WINDOW");
    return active.empty() ? xcb_window_t{XCB_WINDOW_NONE} : active[0];
  }

  xcb_window_t makeActive(const Rect& place, std::uint32_t color) {
    const auto window = client.makeWindow(place, color);
    // A window manager that still starts may lose the first request.
    EXPECT_TRUE(runLoopUntil([&] {
      client.map(window);
      return client.isViewable(window);
    }));
    client.activate(window);
    EXPECT_TRUE(runLoopUntil([&] { return activeWindow() == window; }));
    return window;
  }

  std::unique_ptr<ChildProgram> windowManager;
};

TEST_F(PanelStackingTest, IsShownInFrontWithoutTakingTheKeyboard) {
  startWindowManager();
  const auto player = makeActive({50, 50, 600, 500}, backdrop);
  const auto focused = client.focused();
  showOnePicture();
  EXPECT_TRUE(isAbove(own(), player));
  EXPECT_EQ(client.pixel(200, 130), 0xff0000u);
  EXPECT_EQ(activeWindow(), player);
  EXPECT_EQ(client.focused(), focused);
  ChildProgram click({"xdotool", "mousemove", "200", "130", "click", "1"}, server.display());
  ASSERT_EQ(click.wait(), 0);
  EXPECT_TRUE(client.sawClick());
  EXPECT_EQ(activeWindow(), player);
}

TEST_F(PanelStackingTest, TheWindowManagerDoesNotCountItAmongItsWindows) {
  startWindowManager();
  const auto player = makeActive({50, 50, 600, 500}, backdrop);
  showOnePicture();
  EXPECT_EQ(client.numbers(client.root(), "_NET_CLIENT_LIST"), std::vector<std::uint32_t>{player});
}

TEST_F(PanelStackingTest, StaysVisibleAndInFrontWhenAnotherProgramBecomesActive) {
  startWindowManager();
  const auto player = makeActive({50, 50, 600, 500}, backdrop);
  showOnePicture();
  const auto editor = makeActive({60, 60, 700, 500}, 0x808080);
  EXPECT_TRUE(runLoopUntil([&] { return isAbove(own(), editor); }));
  client.activate(player);
  ASSERT_TRUE(runLoopUntil([&] { return activeWindow() == player; }));
  EXPECT_TRUE(runLoopUntil([&] { return isAbove(own(), player); }));
  EXPECT_TRUE(client.isViewable(own()));
  EXPECT_TRUE(runLoopUntil([&] { return client.pixel(200, 130) == 0xff0000u; }));
}

TEST_F(PanelStackingTest, LiesOverAWindowThatFillsTheScreen) {
  startWindowManager();
  showOnePicture();
  const auto player = makeActive({50, 50, 600, 500}, backdrop);
  client.makeFullscreen(player);
  ASSERT_TRUE(runLoopUntil([&] { return client.frame(client.topLevelOf(player)).height == 800; }));
  EXPECT_TRUE(runLoopUntil([&] { return isAbove(own(), player); }));
  EXPECT_TRUE(runLoopUntil([&] { return client.pixel(200, 130) == 0xff0000u; }));
  panel->orderOut();
  panel->orderFrontRegardless();
  EXPECT_TRUE(runLoopUntil([&] { return isAbove(own(), player); }));
}

TEST_F(PanelStackingTest, IsThereOnEveryDesktop) {
  startWindowManager();
  const auto player = makeActive({50, 50, 600, 500}, backdrop);
  showOnePicture();
  ChildProgram go({"wmctrl", "-s", "1"}, server.display());
  ASSERT_EQ(go.wait(), 0);
  ASSERT_TRUE(runLoopUntil([&] { return !client.isViewable(player); }));
  EXPECT_TRUE(client.isViewable(own()));
  EXPECT_EQ(client.pixel(200, 130), 0xff0000u);
}

TEST_F(PanelStackingTest, ShownAgainItLiesAboveWhatCameWhileItWasHidden) {
  showOnePicture();
  panel->orderOut();
  settle();
  const auto other = client.makeWindow({0, 0, 600, 500}, backdrop, false);
  ASSERT_TRUE(isAbove(other, own()));
  panel->orderFrontRegardless();
  settle();
  EXPECT_TRUE(isAbove(own(), other));
}

TEST_F(PanelStackingTest, GoesBackAboveAWindowThatIsRaisedNowAndThen) {
  showOnePicture();
  const auto other = client.makeWindow({0, 0, 600, 500}, backdrop, false);
  EXPECT_TRUE(runLoopUntil([&] { return isAbove(own(), other); }));
  client.raise(other);
  EXPECT_TRUE(runLoopUntil([&] { return isAbove(own(), other); }));
}

TEST_F(PanelStackingTest, GivesWayToAWindowThatPutsItselfBackEachTime) {
  showOnePicture();
  const auto insister = client.makeWindow({0, 0, 600, 500}, backdrop, false);
  settle();
  int rounds = 0;
  while (rounds < 50 && isAbove(own(), insister)) {
    client.raise(insister);
    settle();
    ++rounds;
  }
  EXPECT_GE(rounds, 2);
  EXPECT_LE(rounds, 4);
  EXPECT_TRUE(isAbove(insister, own()));
  // Another window is still answered, and the insister stays where it is.
  const auto other = client.makeWindow({0, 0, 600, 500}, 0x808080, false);
  client.raise(insister);
  settle();
  EXPECT_TRUE(isAbove(own(), other));
  EXPECT_TRUE(isAbove(insister, own()));
}

TEST_F(PanelStackingTest, AHiddenPanelHearsNothingOfOtherWindows) {
  struct Ear final : XEventListener {
    void handleEvent(const xcb_generic_event_t& event) override {
      heard = heard || eventType(event) == XCB_CONFIGURE_NOTIFY;
    }
    bool heard = false;
  } ear;
  showOnePicture();
  const auto other = client.makeWindow({0, 0, 600, 500}, backdrop, false);
  settle();
  session->addListener(ear);
  client.raise(other);
  settle();
  EXPECT_TRUE(ear.heard);
  panel->orderOut();
  settle();
  ear.heard = false;
  client.raise(other);
  settle();
  EXPECT_FALSE(ear.heard);
  session->removeListener(ear);
}

TEST(StackingGuardTest, AWindowRaisedSeldomIsAlwaysAnswered) {
  StackingGuard guard;
  for (int i = 0; i < 100; ++i) EXPECT_TRUE(guard.answers(7, i * 1.5));
}

TEST(StackingGuardTest, TheFourthRoundWithinASecondOfTheLastIsGivenUpForGood) {
  StackingGuard guard;
  EXPECT_TRUE(guard.answers(7, 0));
  EXPECT_TRUE(guard.answers(7, 1.0));  // exactly a second still counts as soon
  EXPECT_TRUE(guard.answers(7, 1.5));
  EXPECT_FALSE(guard.answers(7, 2.0));
  EXPECT_FALSE(guard.answers(7, 100));
  EXPECT_TRUE(guard.answers(8, 100));
}

TEST(StackingGuardTest, AWindowThatWentAwayBeginsAnew) {
  StackingGuard guard;
  for (int i = 0; i < 5; ++i) guard.answers(7, 0);
  EXPECT_FALSE(guard.answers(7, 0));
  guard.forget(7);
  EXPECT_TRUE(guard.answers(7, 0));
  for (int i = 0; i < 5; ++i) guard.answers(7, 0);
  guard.reset();
  EXPECT_TRUE(guard.answers(7, 0));
}

// With the real compositor.
class PanelCompositedTest : public PanelStackingTest {
 protected:
  void startCompositor(std::vector<std::string> extra = {}) {
    std::vector<std::string> arguments{"picom", "--backend", "xrender", "--config", "/dev/null"};
    arguments.insert(arguments.end(), extra.begin(), extra.end());
    compositor = std::make_unique<ChildProgram>(arguments, server.display());
    ASSERT_TRUE(runLoopUntil([&] { return client.owner("_NET_WM_CM_S0") != XCB_WINDOW_NONE; }));
  }

  std::unique_ptr<ChildProgram> compositor;
};

TEST_F(PanelCompositedTest, WhatIsBelowShowsThroughAndIsTinted) {
  client.makeWindow({0, 0, 1280, 800}, backdrop, false);
  startCompositor();
  showOnePicture();
  pictures.push_back({plainPicture(100, 40, 0, {1, 1, 1, 0.5}), {50, 200, 100, 40}});
  view->setNeedsDisplay();
  EXPECT_TRUE(runLoopUntil([&] { return client.pixel(200, 130) == 0xff0000u; }));
  // Inside the panel, no caption there.
  EXPECT_TRUE(runLoopUntil([&] { return client.pixel(300, 150) == backdrop; }));
  EXPECT_TRUE(runLoopUntil([&] { return client.pixel(200, 270) >> 16 > 0x80; }));
  const std::uint32_t tinted = client.pixel(200, 270);
  EXPECT_NEAR(tinted >> 16, (0x30 + 0xff) / 2, 2);
  EXPECT_NEAR(tinted >> 8 & 0xff, (0x60 + 0xff) / 2, 2);
  EXPECT_NEAR(tinted & 0xff, (0xc0 + 0xff) / 2, 2);
}

TEST_F(PanelCompositedTest, NoShadowFallsAroundIt) {
  client.makeWindow({0, 0, 1280, 800}, backdrop, false);
  startCompositor({"--shadow", "--shadow-opacity=1", "--shadow-radius=20"});
  // Another window shows that shadows are on at all.
  client.makeWindow({700, 200, 200, 200}, 0x808080, false);
  ASSERT_TRUE(runLoopUntil([&] { return client.pixel(905, 405) != backdrop; }));
  showOnePicture();
  ASSERT_TRUE(runLoopUntil([&] { return client.pixel(200, 130) == 0xff0000u; }));
  for (const int distance : {1, 3, 8, 15}) {
    EXPECT_EQ(client.pixel(500 + distance, 200), backdrop);
    EXPECT_EQ(client.pixel(300, 350 + distance), backdrop);
    EXPECT_EQ(client.pixel(100 - distance, 200), backdrop);
    EXPECT_EQ(client.pixel(300, 200), backdrop);
  }
}

TEST_F(PanelCompositedTest, FallsBackToPlatesWhenTheCompositorDies) {
  client.makeWindow({0, 0, 1280, 800}, backdrop, false);
  startCompositor();
  showOnePicture();
  EXPECT_EQ(client.boundingShape(own()), std::nullopt);
  compositor->end(SIGKILL);
  EXPECT_TRUE(runLoopUntil([&] { return client.boundingShape(own()) != std::nullopt; }));
  EXPECT_TRUE(runLoopUntil([&] { return client.pixel(200, 130) == 0xff0000u; }));
  EXPECT_TRUE(runLoopUntil([&] { return client.pixel(300, 150) == backdrop; }));
}

}  // namespace
}  // namespace vellora
