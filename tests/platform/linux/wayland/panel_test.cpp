// The panel on a real compositor: where it is, what it leaves alone, and what it survives.
#include <csignal>
#include <string>

#include <gtest/gtest.h>

#include "platform/linux/wayland/panel_desk.h"

namespace vellora {
namespace {

class WaylandPanelTest : public testing::Test, protected WaylandDesk {
 protected:
  ~WaylandPanelTest() override {
    if (stopped_ > 0) ::kill(stopped_, SIGCONT);
  }

  void showOnePicture(const Rect& place, double scale = 1) {
    pictures = {{chequeredPicture(100, 40, scale, 1), {50, 60, 100, 40}}};
    show(place);
  }
  void setScale(const char* output, double scale) {
    sway.command(std::string("output ") + output + " scale " + std::to_string(scale));
    EXPECT_TRUE(runLoopUntil([&] {
      for (const Output& each : session->layout().outputs) {
        if (each.name == output && each.scale == scale) return true;
      }
      return false;
    }));
  }
  double leftOf(const char* output) {
    for (const Output& each : session->layout().outputs) {
      if (each.name == output) return each.place.x;
    }
    ADD_FAILURE() << "there is no " << output;
    return 0;
  }
  void stopCompositor() {
    stopped_ = sway.pid();
    ::kill(stopped_, SIGSTOP);
  }
  void wakeCompositor() { ::kill(std::exchange(stopped_, 0), SIGCONT); }

  static constexpr Rect frame{101, 53, 400, 300};

 private:
  pid_t stopped_ = 0;
};

TEST_F(WaylandPanelTest, FollowsItsFrame) {
  const auto before = sway.picture(Sway::first);
  showOnePicture(frame);
  EXPECT_TRUE(comesToShow(Sway::first, before.get(), 101, 53, {400, 300}));
  move({300, 200, 400, 300});
  EXPECT_TRUE(comesToShow(Sway::first, before.get(), 300, 200, {400, 300}));
  move({310, 210, 120, 90});  // the picture is cut
  EXPECT_TRUE(comesToShow(Sway::first, before.get(), 310, 210, {120, 90}));
  move({-80, -70, 400, 300});  // and begins outside
  EXPECT_TRUE(comesToShow(Sway::first, before.get(), -80, -70, {400, 300}));
}

TEST_F(WaylandPanelTest, ShowsWhatIsDrawnAnewAndNothingOnceItIsHidden) {
  const auto before = sway.picture(Sway::first);
  showOnePicture(frame);
  ASSERT_TRUE(comesToShow(Sway::first, before.get(), 101, 53, {400, 300}));
  for (int i = 0; i < 5; ++i) {
    pictures[0].destination.y += 31;
    pictures.push_back({chequeredPicture(30, 20, 1, 7), {10.0 + 40 * i, 20, 30, 20}});
    view->setNeedsDisplay();
    ASSERT_TRUE(comesToShow(Sway::first, before.get(), 101, 53, {400, 300})) << i;
  }
  EXPECT_GT(buffers(), 0);
  EXPECT_LE(buffers(), 2);
  panel->orderOut();
  EXPECT_EQ(buffers(), 0);
  EXPECT_TRUE(comesToLook(Sway::first, before.get()));
  panel->orderFrontRegardless();
  EXPECT_TRUE(comesToShow(Sway::first, before.get(), 101, 53, {400, 300}));
}

TEST_F(WaylandPanelTest, APictureThatTheCompositorHasReadTakesNoMemory) {
  pictures = {{chequeredPicture(1280, 800, 1, 1), {0, 0, 1280, 800}}};
  show({0, 0, 1280, 800});
  for (int i = 0; i < 5; ++i) {
    ASSERT_TRUE(isShown());
    pictures[0].destination.y = i;
    view->setNeedsDisplay();
  }
  ASSERT_TRUE(isShown());
  EXPECT_TRUE(runLoopUntil([] { return kilobytesInBuffers() <= 4 * 1280 * 800 / 1024; }))
      << kilobytesInBuffers();
}

TEST_F(WaylandPanelTest, ManyRequestsMakeOneDrawing) {
  showOnePicture(frame);
  ASSERT_TRUE(isShown());
  drawings = 0;
  for (int i = 0; i < 5; ++i) view->setNeedsDisplay();
  EXPECT_EQ(drawings, 0);
  runLoopDry();
  EXPECT_EQ(drawings, 1);
}

TEST_F(WaylandPanelTest, WhatChangesNothingSendsNothing) {
  showOnePicture(frame);
  ASSERT_TRUE(isShown());
  const std::size_t before = bytesSent();
  view->setNeedsDisplay();
  runLoopDry();
  panel->orderFrontRegardless();
  move({frame.x, frame.y, frame.width, frame.height});
  runLoopDry();
  EXPECT_GE(drawings, 2);
  EXPECT_EQ(bytesSent(), before);
  pictures[0].destination.y += 1;
  view->setNeedsDisplay();
  runLoopDry();
  EXPECT_GT(bytesSent(), before);
}

TEST_F(WaylandPanelTest, ClicksAndTheKeyboardGoToTheWindowsBelow) {
  const ChildProgram left({"foot", "sleep", "60"}, "");
  ASSERT_TRUE(runLoopUntil([&] { return sway.windows().size() == 1; }));
  const ChildProgram right({"foot", "sleep", "60"}, "");
  ASSERT_TRUE(runLoopUntil([&] { return sway.windows().size() == 2; }));
  const auto windows = sway.windows();
  sway.command("[con_id=" + std::to_string(windows[1]) + "] focus");
  ASSERT_EQ(sway.focused(), windows[1]);
  pictures = {{chequeredPicture(1280, 800, 1, 1), {0, 0, 1280, 800}}};
  show({0, 0, 1280, 800});
  ASSERT_TRUE(isShown());
  EXPECT_EQ(sway.focused(), windows[1]);
  sway.command("seat - cursor set 300 400");
  sway.command("seat - cursor press button1");
  sway.command("seat - cursor release button1");
  EXPECT_TRUE(runLoopUntil([&] { return sway.focused() == windows[0]; }));
  EXPECT_TRUE(panel->ignoresMouseEvents());
  EXPECT_FALSE(panel->isOpaque());
}

TEST_F(WaylandPanelTest, MovesToTheOutputThatMostOfItIsOnAndTakesItsScale) {
  setScale(Sway::second, 2);
  const auto first = sway.picture(Sway::first);
  const auto second = sway.picture(Sway::second);
  const double right = leftOf(Sway::second);
  showOnePicture({right - 250, 53, 400, 300});
  EXPECT_TRUE(comesToShow(Sway::first, first.get(), static_cast<int>(right) - 250, 53, {400, 300}));
  EXPECT_EQ(view->windowScale(), 1);
  EXPECT_TRUE(comesToLook(Sway::second, second.get()));
  pictures[0].picture = chequeredPicture(100, 40, 2, 1);
  move({right - 150, 53, 400, 300});
  EXPECT_EQ(view->windowScale(), 2);
  EXPECT_TRUE(comesToShow(Sway::second, second.get(), -300, 106, {400, 300}, 2));
  EXPECT_TRUE(comesToLook(Sway::first, first.get()));
}

TEST_F(WaylandPanelTest, AChangeOfScaleIsDrawnUnasked) {
  setScale(Sway::first, 2);
  const auto before = sway.picture(Sway::first);
  setScale(Sway::first, 1);
  showOnePicture({100, 450, 300, 200});  // 150 points above the bottom of 800
  ASSERT_TRUE(isShown());
  pictures[0].picture = chequeredPicture(100, 40, 2, 1);
  setScale(Sway::first, 2);  // and now of 400
  EXPECT_TRUE(comesToShow(Sway::first, before.get(), 200, 100, {300, 200}, 2));
  EXPECT_EQ(view->windowScale(), 2);
}

// Far more changes than a socket could hold, with every buffer free or none.
TEST_F(WaylandPanelTest, AStoppedCompositorIsToldOneMoveAtATime) {
  const auto before = sway.picture(Sway::first);
  showOnePicture(frame);
  ASSERT_TRUE(isShown());
  stopCompositor();
  const std::size_t sent = bytesSent();
  for (int i = 0; i < 3000; ++i) {
    move({frame.x + i % 50, frame.y, frame.width, frame.height});
    runLoopDry();
  }
  EXPECT_LT(bytesSent() - sent, 512u);
  wakeCompositor();
  EXPECT_TRUE(comesToShow(Sway::first, before.get(), 101 + 2999 % 50, 53, {400, 300}));
}

// Far more changes than a socket could hold: a message is never waited for, and never too many.
TEST_F(WaylandPanelTest, AStoppedCompositorBlocksNothingAndCatchesUp) {
  const auto before = sway.picture(Sway::first);
  showOnePicture(frame);
  ASSERT_TRUE(isShown());
  stopCompositor();
  const std::size_t sent = bytesSent();
  for (int i = 0; i < 3000; ++i) {
    pictures[0].destination.y = 10 + i % 200;
    view->setNeedsDisplay();
    move({frame.x + i % 50, frame.y, frame.width, frame.height});
    if (i % 3 == 0) panel->orderOut();
    panel->orderFrontRegardless();
    runLoopDry();
  }
  EXPECT_LT(bytesSent() - sent, 4096u);
  EXPECT_TRUE(session->present());
  pictures[0].destination = {77, 88, 100, 40};
  view->setNeedsDisplay();
  wakeCompositor();
  EXPECT_TRUE(comesToShow(Sway::first, before.get(), 101 + 2999 % 50, 53, {400, 300}));
}

TEST_F(WaylandPanelTest, SurvivesTheCompositorsEnd) {
  showOnePicture(frame);
  ASSERT_TRUE(isShown());
  ::kill(sway.pid(), SIGKILL);
  panel->orderFrontRegardless();
  view->setNeedsDisplay();
  EXPECT_TRUE(runLoopUntil([&] { return !session->present(); }));
  panel->orderOut();
  panel->orderFrontRegardless();
  move({0, 0, 10, 10});
  view->setNeedsDisplay();
  runLoopDry();
  EXPECT_TRUE(panel->ignoresMouseEvents());
  EXPECT_FALSE(panel->isOpaque());
  EXPECT_EQ(view->windowScale(), std::nullopt);
}

TEST(WaylandPanelWithoutCompositorTest, RemembersItsSettings) {
  const auto session = std::make_shared<WaylandSession>(nullptr);
  HostedView view([&] { return session->layout().primaryScale(); });
  WaylandPanel panel(session);
  EXPECT_FALSE(panel.ignoresMouseEvents());
  EXPECT_TRUE(panel.isOpaque());
  panel.configure(view);
  panel.setFrame({0, 0, 100, 100});
  panel.orderFrontRegardless();
  view.setNeedsDisplay();
  runLoopDry();
  panel.orderOut();
  EXPECT_TRUE(panel.ignoresMouseEvents());
  EXPECT_FALSE(panel.isOpaque());
}

}  // namespace
}  // namespace vellora
