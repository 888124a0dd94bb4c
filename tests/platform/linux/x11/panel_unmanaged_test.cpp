#include "stacking_fixture.h"

namespace vellora {
namespace {

// Windows that no window manager cares for, screen lockers above all, lie over the panel.
using PanelUnderUnmanagedTest = PanelStackingTest;

TEST_F(PanelUnderUnmanagedTest, NeverLiesOverAnUnmanagedWindowThatIsMapped) {
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

TEST_F(PanelUnderUnmanagedTest, StaysBelowALockerThatCameWhileItWasHidden) {
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

TEST_F(PanelUnderUnmanagedTest, GoesBelowAnUnmanagedWindowThatIsMappedUnderIt) {
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

TEST_F(PanelUnderUnmanagedTest, PutOverALockerByAnotherProgramItGoesBack) {
  startWindowManager();
  const auto player = makeActive({50, 50, 600, 500}, backdrop);
  showOnePicture();
  const auto locker = client.makeWindow({0, 0, 1280, 800}, 0x00ff00, false);
  settle();
  client.raise(own());
  EXPECT_TRUE(runLoopUntil([&] { return isAbove(locker, own()); }));
  EXPECT_TRUE(runLoopUntil([&] { return isAbove(own(), player); }));
}

TEST_F(PanelUnderUnmanagedTest, PutOverALockerManyTimesItEndsBelowAndComesBackAfterwards) {
  startWindowManager();
  const auto player = makeActive({50, 50, 600, 500}, backdrop);
  showOnePicture();
  const auto locker = client.makeWindow({0, 0, 1280, 800}, 0x00ff00, false);
  settle();
  for (int i = 0; i < 12; ++i) {
    client.raise(own());
    settle();
    EXPECT_TRUE(isAbove(locker, own())) << i;
  }
  EXPECT_EQ(client.pixel(200, 130), 0x00ff00u);
  now += 1.1;
  client.destroyWindow(locker);
  EXPECT_TRUE(runLoopUntil([&] { return isAbove(own(), player); }));
}

TEST_F(PanelUnderUnmanagedTest, ALockerPutUnderItManyTimesIsNeverLainOver) {
  startWindowManager();
  const auto player = makeActive({50, 50, 600, 500}, backdrop);
  showOnePicture();
  const auto locker = client.makeWindow({0, 0, 1280, 800}, 0x00ff00, false);
  settle();
  for (int i = 0; i < 8; ++i) {
    client.placeAbove(locker, client.topLevelOf(player));
    settle();
    EXPECT_TRUE(isAbove(locker, own())) << i;
    EXPECT_EQ(client.pixel(200, 130), 0x00ff00u) << i;
  }
}

TEST_F(PanelUnderUnmanagedTest, TwoOverlaysDoNotChaseEachOther) {
  startWindowManager();
  const auto player = makeActive({50, 50, 600, 500}, backdrop);
  showOnePicture();
  const auto first = own();
  const auto secondSession = std::make_shared<XSession>(server.display().c_str());
  const auto secondView = XWindowSystem(secondSession).makeView();
  const auto second = std::make_unique<XPanel>(secondSession, [&] { return now; });
  second->configure(*secondView);
  second->setFrame(frame);
  second->orderFrontRegardless();
  const auto windows = client.topLevels();
  const auto theOther = *std::find_if(windows.begin(), windows.end(), [&](xcb_window_t each) {
    return each != first && client.text(each, "WM_CLASS") == client.text(first, "WM_CLASS");
  });
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
  EXPECT_TRUE(isAbove(first, player) || isAbove(theOther, player));
}

}  // namespace
}  // namespace vellora
