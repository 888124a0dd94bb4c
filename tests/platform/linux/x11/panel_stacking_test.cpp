#include <gtest/gtest.h>

#include "stacking_fixture.h"

namespace vellora {
namespace {

// Whether a window was restacked, moved or resized.
struct Ear final : XEventListener {
  void handleEvent(const xcb_generic_event_t& event) override {
    heard = heard || eventType(event) == XCB_CONFIGURE_NOTIFY;
  }
  bool heard = false;
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
  const auto other = client.makeWindow({0, 0, 600, 500}, backdrop);
  ASSERT_TRUE(isAbove(other, own()));
  panel->orderFrontRegardless();
  settle();
  EXPECT_TRUE(isAbove(own(), other));
}

TEST_F(PanelStackingTest, GoesBackAboveAWindowThatIsRaisedNowAndThen) {
  showOnePicture();
  const auto other = client.makeWindow({0, 0, 600, 500}, backdrop);
  EXPECT_TRUE(runLoopUntil([&] { return isAbove(own(), other); }));
  client.raise(other);
  EXPECT_TRUE(runLoopUntil([&] { return isAbove(own(), other); }));
}

TEST_F(PanelStackingTest, GivesWayToAWindowThatPutsItselfBackEachTime) {
  showOnePicture();
  const auto insister = client.makeWindow({0, 0, 600, 500}, backdrop);
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
  const auto other = client.makeWindow({0, 0, 600, 500}, 0x808080);
  client.raise(insister);
  settle();
  EXPECT_TRUE(isAbove(own(), other));
  EXPECT_TRUE(isAbove(insister, own()));
}

TEST_F(PanelStackingTest, GoesBackOnceTheWindowThatItGaveWayToHasRestedForASecond) {
  showOnePicture();
  const auto insister = client.makeWindow({0, 0, 600, 500}, backdrop);
  const auto other = client.makeWindow({0, 0, 600, 500}, 0x808080);
  settle();
  for (int i = 0; i < 5; ++i) {
    client.raise(insister);
    settle();
  }
  ASSERT_TRUE(isAbove(insister, own()));
  const auto somethingHappens = [&] {
    client.raise(other);
    client.placeAbove(other, own());
    settle();
  };
  now += 0.9;
  client.placeAbove(insister, other);
  client.raise(insister);
  settle();
  now += 0.9;
  somethingHappens();
  EXPECT_TRUE(isAbove(insister, own()));
  now += 0.2;
  somethingHappens();
  EXPECT_TRUE(isAbove(own(), insister));
}

TEST_F(PanelStackingTest, NeverGivesWayToTheActiveWindow) {
  startWindowManager();
  const auto player = makeActive({50, 50, 600, 500}, backdrop);
  showOnePicture();
  for (int i = 0; i < 8; ++i) {
    client.raise(client.topLevelOf(player));
    ASSERT_TRUE(runLoopUntil([&] { return isAbove(own(), player); })) << i;
  }
}

// As some window managers make them.
TEST_F(PanelStackingTest, AFrameThatIsOverrideRedirectIsLainOver) {
  const auto around = client.makeWindow({50, 50, 600, 500}, backdrop, false);
  const auto player = client.makeWindow({0, 0, 600, 500}, backdrop);
  client.reparent(player, around);
  const auto above = client.makeWindow({100, 60, 600, 500}, 0x808080, false);
  const auto other = client.makeWindow({0, 0, 600, 500}, 0x808080);
  client.reparent(other, above);
  client.setWindows(client.root(), "_NET_CLIENT_LIST", {player});
  client.setWindows(client.root(), "_NET_ACTIVE_WINDOW", {player});
  showOnePicture();
  settle();
  EXPECT_TRUE(isAbove(own(), around));
  EXPECT_TRUE(isAbove(above, own()));
  // Now the second is managed, too.
  client.setWindows(client.root(), "_NET_CLIENT_LIST", {player, other});
  EXPECT_TRUE(runLoopUntil([&] { return isAbove(own(), above); }));
}

// The root's listeners hear nothing of that, but the window manager tells its windows anew.
TEST_F(PanelStackingTest, AClientThatGoesStraightToAnotherFrameIsFollowed) {
  const auto first = client.makeWindow({50, 50, 600, 500}, backdrop, false);
  const auto player = client.makeWindow({0, 0, 600, 500}, backdrop);
  client.reparent(player, first);
  const auto second = client.makeWindow({50, 50, 600, 500}, 0x808080, false);
  client.setWindows(client.root(), "_NET_CLIENT_LIST", {player});
  client.setWindows(client.root(), "_NET_ACTIVE_WINDOW", {player});
  showOnePicture();
  settle();
  ASSERT_TRUE(isAbove(own(), first));
  ASSERT_TRUE(isAbove(second, own()));
  client.reparent(player, second);
  client.setWindows(client.root(), "_NET_ACTIVE_WINDOW", {player});
  settle();
  EXPECT_TRUE(isAbove(own(), second));
}

TEST_F(PanelStackingTest, WithoutAWindowManagerItLiesDirectlyAboveTheActiveWindow) {
  const auto player = client.makeWindow({50, 50, 600, 500}, backdrop);
  client.setWindows(client.root(), "_NET_ACTIVE_WINDOW", {player});
  const auto other = client.makeWindow({300, 50, 600, 500}, 0x808080);
  showOnePicture();
  settle();
  EXPECT_TRUE(isAbove(own(), player));
  EXPECT_TRUE(isAbove(other, own()));
}

TEST_F(PanelStackingTest, ABurstOfRestackingsCostsOnePass) {
  showOnePicture();
  const auto one = client.makeWindow({0, 0, 600, 500}, backdrop);
  const auto two = client.makeWindow({0, 0, 600, 500}, 0x808080);
  settle();
  for (int i = 0; i < 20; ++i) client.raise(i % 2 == 0 ? one : two);
  // One question for the tree, one move.
  EXPECT_LE(requestsDuring([&] { session->dispatch(); }), 2u);
  settle();
  EXPECT_TRUE(isAbove(own(), one));
  EXPECT_TRUE(isAbove(own(), two));
}

TEST_F(PanelStackingTest, AWindowThatMovesWithoutBeingRaisedCostsNothing) {
  const auto other = client.makeWindow({0, 0, 600, 500}, backdrop);
  showOnePicture();
  settle();
  const auto dragged = [&](int x) {
    const std::uint32_t place = static_cast<std::uint32_t>(x);
    xcb_configure_window(client.connection(), other, XCB_CONFIG_WINDOW_X, &place);
    client.topLevels();
  };
  dragged(1);
  settle();
  for (int i = 2; i < 20; ++i) dragged(i);
  EXPECT_EQ(requestsDuring([&] { session->dispatch(); }), 0u);
}

TEST_F(PanelStackingTest, AHiddenPanelHearsNothingOfOtherWindows) {
  Ear ear;
  showOnePicture();
  const auto other = client.makeWindow({0, 0, 600, 500}, backdrop);
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

TEST_F(PanelStackingTest, NorDoesOneWhoseWindowWasDestroyed) {
  Ear ear;
  showOnePicture();
  const auto other = client.makeWindow({0, 0, 600, 500}, backdrop);
  client.makeWindow({0, 0, 600, 500}, 0x808080);
  settle();
  client.destroyWindow(own());
  settle();
  panel->orderOut();
  settle();
  session->addListener(ear);
  client.raise(other);
  settle();
  EXPECT_FALSE(ear.heard);
  session->removeListener(ear);
}

}  // namespace
}  // namespace vellora
