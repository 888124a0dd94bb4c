#include <algorithm>
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

TEST_F(PanelStackingTest, NeverLiesOverAnUnmanagedWindowThatIsMapped) {
  startWindowManager();
  const auto player = makeActive({50, 50, 600, 500}, backdrop);
  showOnePicture();
  // A locker that comes while the panel is shown, and raises itself now and then.
  const auto locker = client.makeWindow({0, 0, 1280, 800}, 0x00ff00, false);
  for (int i = 0; i < 6; ++i) {
    client.raise(locker);
    settle();
    EXPECT_TRUE(isAbove(locker, own()));
    EXPECT_TRUE(runLoopUntil([&] { return isAbove(own(), player); }));
  }
  // The panel is shown anew behind it.
  panel->orderOut();
  settle();
  panel->orderFrontRegardless();
  settle();
  EXPECT_TRUE(isAbove(locker, own()));
  EXPECT_TRUE(runLoopUntil([&] { return isAbove(own(), player); }));
  // Another window becomes active behind it.
  const auto editor = makeActive({60, 60, 700, 500}, 0x808080);
  settle();
  EXPECT_TRUE(isAbove(locker, own()));
  EXPECT_TRUE(runLoopUntil([&] { return isAbove(own(), editor); }));
  EXPECT_EQ(client.pixel(200, 130), 0x00ff00u);
  client.destroyWindow(locker);
  EXPECT_TRUE(runLoopUntil([&] { return client.pixel(200, 130) == 0xff0000u; }));
}

TEST_F(PanelStackingTest, StaysBelowALockerThatCameWhileItWasHidden) {
  startWindowManager();
  const auto player = makeActive({50, 50, 600, 500}, backdrop);
  showOnePicture();
  panel->orderOut();
  settle();
  const auto locker = client.makeWindow({0, 0, 1280, 800}, 0x00ff00, false);
  panel->orderFrontRegardless();
  settle();
  EXPECT_TRUE(isAbove(locker, own()));
  EXPECT_TRUE(runLoopUntil([&] { return isAbove(own(), player); }));
  EXPECT_EQ(client.pixel(200, 130), 0x00ff00u);
}

TEST_F(PanelStackingTest, GoesBelowAnUnmanagedWindowThatIsMappedUnderIt) {
  startWindowManager();
  const auto player = makeActive({50, 50, 600, 500}, backdrop);
  showOnePicture();
  const auto menu = client.makeWindow({150, 100, 200, 100}, 0x00ff00, false);
  client.unmap(menu);
  client.placeAbove(menu, client.topLevelOf(player));
  ASSERT_TRUE(runLoopUntil([&] { return isAbove(own(), menu); }));
  client.map(menu);
  EXPECT_TRUE(runLoopUntil([&] { return isAbove(menu, own()); }));
  EXPECT_TRUE(runLoopUntil([&] { return isAbove(own(), player); }));
  EXPECT_EQ(client.pixel(200, 130), 0x00ff00u);
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

TEST_F(PanelStackingTest, WithoutAWindowManagerItLiesDirectlyAboveTheActiveWindow) {
  const auto player = client.makeWindow({50, 50, 600, 500}, backdrop);
  client.setWindows(client.root(), "_NET_ACTIVE_WINDOW", {player});
  const auto other = client.makeWindow({300, 50, 600, 500}, 0x808080);
  showOnePicture();
  settle();
  EXPECT_TRUE(isAbove(own(), player));
  EXPECT_TRUE(isAbove(other, own()));
}

TEST_F(PanelStackingTest, TwoOverlaysDoNotChaseEachOther) {
  startWindowManager();
  const auto player = makeActive({50, 50, 600, 500}, backdrop);
  showOnePicture();
  const auto first = own();
  const auto secondSession = std::make_shared<XSession>(server.display().c_str());
  const auto secondView = makeView(secondSession);
  const auto second = makePanel(secondSession);
  second->configure(*secondView);
  second->setFrame(frame);
  second->orderFrontRegardless();
  client.raise(client.topLevelOf(player));
  // Both have done with it when neither asks for anything any more.
  const auto sent = [&] {
    return xcb_no_operation(session->connection()).sequence +
           xcb_no_operation(secondSession->connection()).sequence;
  };
  unsigned quiet = 0;
  int rounds = 0;
  for (; quiet < 10 && rounds < 200; ++rounds) {
    const unsigned before = sent();
    settle();
    client.topLevels();
    quiet = sent() - before <= 2 + 1 ? quiet + 1 : 0;  // what `sent` and `settle` ask themselves
  }
  EXPECT_LT(rounds, 200);
  EXPECT_TRUE(isAbove(first, player));
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

TEST_F(PanelStackingTest, PutOverALockerByAnotherProgramItGoesBack) {
  startWindowManager();
  const auto player = makeActive({50, 50, 600, 500}, backdrop);
  showOnePicture();
  const auto locker = client.makeWindow({0, 0, 1280, 800}, 0x00ff00, false);
  settle();
  client.raise(own());
  EXPECT_TRUE(runLoopUntil([&] { return isAbove(locker, own()); }));
  EXPECT_TRUE(runLoopUntil([&] { return isAbove(own(), player); }));
}

TEST_F(PanelStackingTest, AHiddenPanelHearsNothingOfOtherWindows) {
  struct Ear final : XEventListener {
    void handleEvent(const xcb_generic_event_t& event) override {
      heard = heard || eventType(event) == XCB_CONFIGURE_NOTIFY;
    }
    bool heard = false;
  } ear;
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

}  // namespace
}  // namespace vellora
