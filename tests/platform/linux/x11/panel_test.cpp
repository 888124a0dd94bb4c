#include <cmath>
#include <csignal>
#include <limits>

#include <gtest/gtest.h>

#include "panel_fixture.h"

namespace vellora {
namespace {

class PanelTest : public PanelFixture {
 protected:
  // The test stands in for the compositor: what matters to the panel is that there is one.
  xcb_window_t pretendToComposite() { return client.own("_NET_WM_CM_S0"); }
};

TEST_F(PanelTest, ItsMouseSettingIsReadFromTheWindow) {
  panel->configure(*view);
  settle();
  ASSERT_TRUE(panel->ignoresMouseEvents());
  client.setInputShape(own(), {0, 0, 10, 10});
  EXPECT_FALSE(panel->ignoresMouseEvents());
}

TEST_F(PanelTest, ClicksGoToTheWindowBelow) {
  client.makeWindow({0, 0, 1280, 800}, backdrop);
  pretendToComposite();
  showOnePicture();
  ChildProgram click({"xdotool", "mousemove", "200", "130", "click", "1"}, server.display());
  ASSERT_EQ(click.wait(), 0);
  EXPECT_TRUE(client.sawClick());
}

TEST_F(PanelTest, LiesWhereItsFrameSaysWithTheAxisTurned) {
  showOnePicture();
  panel->setFrame({-20.4, 700.6, 120.8, 119.4});  // edges -20.4, 100.4; y down -20 to 99.4
  settle();
  EXPECT_EQ(client.frame(own()), (Rect{-20, -20, 120, 119}));
  panel->setFrame({0, 0, -50, -50});
  settle();
  EXPECT_TRUE(session->present());
}

TEST_F(PanelTest, AGiantFrameMakesNoWindowLargerThanTheScreens) {
  showOnePicture();
  for (const double size : {9000.0, 60000.0}) {
    panel->setFrame({-20, 800 + 30 - size, size, size});  // y down from -30
    settle();
    const Rect window = client.frame(own());
    EXPECT_TRUE(Rect(0, 0, 1280, 800).contains(window)) << window.width << " × " << window.height;
    // The picture stays at the panel's (50, 60).
    EXPECT_TRUE(runLoopUntil([&] { return client.pixel(30 + 20, 30 + 20) == 0xff0000u; })) << size;
    EXPECT_EQ(client.boundingShape(own()), std::vector<Rect>({{40, 40, 80, 20}}));
  }
  panel->setFrame({1300, 100, 60000, 60000});  // nothing of it is on the screens
  settle();
  EXPECT_LE(client.frame(own()).width, 1280);
  panel->setFrame(frame);
  settle();
  EXPECT_EQ(client.frame(own()), Rect(100, 50, 400, 300));
}

TEST_F(PanelTest, ThePrimaryScreenTurnsTheAxisNotTheScreenThatHoldsIt) {
  client.setMonitor("left", true, 500, true);
  makeSession();
  panel->configure(*view);
  panel->setFrame({100, 150, 400, 300});  // the primary is 500 high: from 50 down
  panel->orderFrontRegardless();
  EXPECT_TRUE(runLoopUntil([&] { return client.frame(own()) == Rect(100, 50, 400, 300); }));
}

TEST_F(PanelTest, APointIsAsManyPixelsAsTheScaleSays) {
  setenv("GDK_SCALE", "2", 1);
  makeSession();
  pictures = {{plainPicture(100, 40, 10, {1, 0, 0, 1}, 2), {50, 60, 100, 40}}};
  panel->configure(*view);
  panel->setFrame({100, 50, 400, 300});  // the screen is 400 points high
  view->setFrame({0, 0, 400, 300});
  panel->orderFrontRegardless();
  ASSERT_TRUE(runLoopUntil([&] { return client.frame(own()) == Rect(200, 100, 800, 600); }));
  EXPECT_TRUE(runLoopUntil([&] { return client.pixel(200 + 121, 100 + 141) == 0xff0000u; }));
  EXPECT_EQ(client.boundingShape(own()), std::vector<Rect>({{120, 140, 160, 40}}));
}

TEST_F(PanelTest, AChangeOfScaleMovesItAtOnce) {
  showOnePicture();
  const auto manager = client.own("_XSETTINGS_S0");
  client.setText(manager, "_XSETTINGS_SETTINGS",
                 std::string("\0\0\0\0\1\0\0\0\1\0\0\0\0\0\x17\0Gdk/WindowScalingFactor\0"
                             "\1\0\0\0\2\0\0\0",
                             48));
  // Twice as large, and measured from the bottom of a screen of 400 points.
  EXPECT_TRUE(runLoopUntil([&] { return client.frame(own()) == Rect(200, -700, 800, 600); }));
}

TEST_F(PanelTest, WhatIsShownIsDrawnBeforeAnyLoopRuns) {
  pictures = {{plainPicture(100, 40, 10, {1, 0, 0, 1}), {50, 60, 100, 40}}};
  panel->configure(*view);
  panel->setFrame(frame);
  view->setFrame({0, 0, frame.width, frame.height});
  panel->orderFrontRegardless();
  EXPECT_EQ(drawings, 1);
  // The server takes the requests of both connections in turn; wait without serving the panel.
  for (int i = 0; i < 1000 && client.pixel(200, 130) != 0xff0000u; ++i) client.topLevels();
  EXPECT_EQ(client.pixel(200, 130), 0xff0000u);
}

TEST_F(PanelTest, WhatMovedIsOnTheScreenOnceItIsOrderedFrontAgain) {
  client.makeWindow({0, 0, 1280, 800}, backdrop);
  pretendToComposite();
  showOnePicture();
  ASSERT_EQ(client.pixel(200, 130), 0xff0000u);
  const int before = drawings;
  pictures[0].destination.y = 160;
  view->setNeedsDisplay();
  view->setNeedsDisplay();
  panel->orderFrontRegardless();
  EXPECT_EQ(drawings, before + 1);
  // Without the panel's loop, as above.
  for (int i = 0; i < 1000 && client.pixel(200, 230) != 0xff0000u; ++i) client.topLevels();
  EXPECT_EQ(client.pixel(200, 230), 0xff0000u);
  EXPECT_NE(client.pixel(200, 130), 0xff0000u);
  runLoopDry();
  EXPECT_EQ(drawings, before + 1) << "it was drawn already";
}

TEST_F(PanelTest, AHiddenPanelIsUnmapped) {
  client.makeWindow({0, 0, 1280, 800}, backdrop);
  showOnePicture();
  ASSERT_EQ(client.pixel(200, 130), 0xff0000u);
  panel->orderOut();
  EXPECT_TRUE(runLoopUntil([&] { return !client.isViewable(own()); }));
  EXPECT_EQ(client.pixel(200, 130), backdrop);
  panel->orderFrontRegardless();
  EXPECT_TRUE(runLoopUntil([&] { return client.pixel(200, 130) == 0xff0000u; }));
}

TEST_F(PanelTest, OrdersThatChangeNothingSendNothing) {
  showOnePicture();
  EXPECT_EQ(requestsDuring([&] { panel->orderFrontRegardless(); }), 0u);
  EXPECT_EQ(requestsDuring([&] { panel->setFrame(frame); }), 0u);
  panel->orderOut();
  EXPECT_EQ(requestsDuring([&] { panel->orderOut(); }), 0u);
}

TEST_F(PanelTest, CastsNoShadowAndAsksToBeLeftAlone) {
  showOnePicture();
  EXPECT_EQ(client.numbers(own(), "_COMPTON_SHADOW"), std::vector<std::uint32_t>{0});
  EXPECT_EQ(client.numbers(own(), "_NET_WM_DESKTOP"), std::vector<std::uint32_t>{0xffffffff});
  EXPECT_EQ(client.numbers(own(), "WM_HINTS").at(0), 1u);  // the input field counts
  EXPECT_EQ(client.numbers(own(), "WM_HINTS").at(1), 0u);  // and it says no
  EXPECT_EQ(client.text(own(), "WM_NAME"), "Vellora");
}

TEST_F(PanelTest, WithoutACompositorOnlyThePlatesAreThere) {
  client.makeWindow({0, 0, 1280, 800}, backdrop);
  showOnePicture();
  EXPECT_EQ(client.boundingShape(own()), std::vector<Rect>({{60, 70, 80, 20}}));
  EXPECT_EQ(client.pixel(160, 120), 0xff0000u);
  EXPECT_EQ(client.pixel(159, 119), backdrop);
  EXPECT_EQ(client.pixel(300, 300), backdrop);
}

TEST_F(PanelTest, ThePlatesAreFollowedAsTheyMove) {
  client.makeWindow({0, 0, 1280, 800}, backdrop);
  showOnePicture();
  pictures[0].destination = {50, 160, 100, 40};
  view->setNeedsDisplay();
  settle();
  EXPECT_EQ(client.boundingShape(own()), std::vector<Rect>({{60, 170, 80, 20}}));
  EXPECT_EQ(client.pixel(200, 130), backdrop);
  EXPECT_EQ(client.pixel(200, 230), 0xff0000u);
  pictures.clear();
  view->setNeedsDisplay();
  settle();
  EXPECT_EQ(client.boundingShape(own()), std::vector<Rect>());
  EXPECT_EQ(client.pixel(200, 230), backdrop);
}

TEST_F(PanelTest, WithACompositorTheWindowIsWhole) {
  pretendToComposite();
  showOnePicture();
  EXPECT_EQ(client.boundingShape(own()), std::nullopt);
}

TEST_F(PanelTest, IsTransparentWhereNoCaptionIsAndBeforeItIsPainted) {
  pretendToComposite();
  showOnePicture();
  EXPECT_EQ(client.pixelOf(own(), 100, 80), 0xffff0000u);
  EXPECT_EQ(client.pixelOf(own(), 300, 200), 0u);
  client.clear(own());
  EXPECT_EQ(client.pixelOf(own(), 100, 80), 0u);
  EXPECT_EQ(client.pixelOf(own(), 300, 200), 0u);
}

TEST_F(PanelTest, FollowsTheCompositorsComingAndGoing) {
  showOnePicture();
  ASSERT_NE(client.boundingShape(own()), std::nullopt);
  const auto compositor = pretendToComposite();
  EXPECT_TRUE(runLoopUntil([&] { return client.boundingShape(own()) == std::nullopt; }));
  client.destroyWindow(compositor);
  EXPECT_TRUE(runLoopUntil([&] {
    return client.boundingShape(own()) == std::vector<Rect>({{60, 70, 80, 20}});
  }));
}

TEST_F(PanelTest, WhatTheServerLostIsPaintedAgain) {
  showOnePicture();
  client.clear(own());
  EXPECT_TRUE(runLoopUntil([&] { return client.pixel(200, 130) == 0xff0000u; }));
}

TEST_F(PanelTest, AWindowThatAnotherProgramDestroyedIsMadeAgain) {
  showOnePicture();
  client.destroyWindow(own());
  ASSERT_TRUE(runLoopUntil([&] { return own() == XCB_WINDOW_NONE; }));
  settle();
  panel->setFrame(frame);
  panel->orderFrontRegardless();
  EXPECT_TRUE(runLoopUntil([&] { return client.pixel(200, 130) == 0xff0000u; }));
  EXPECT_TRUE(panel->ignoresMouseEvents());
}

TEST_F(PanelTest, SurvivesTheServersEnd) {
  showOnePicture();
  server.end(SIGKILL);
  panel->setFrame({0, 0, 10, 10});
  view->setNeedsDisplay();
  EXPECT_TRUE(runLoopUntil([&] { return !session->present(); }));
  panel->orderFrontRegardless();
  view->setNeedsDisplay();
  panel->orderOut();
  panel->orderFrontRegardless();
  runLoopDry();
  EXPECT_TRUE(panel->ignoresMouseEvents());
  EXPECT_FALSE(panel->isOpaque());
  EXPECT_EQ(view->windowScale(), std::nullopt);
}

TEST_F(PanelTest, PicturesOutliveTheConnectionThatTheyWereDrawnOn) {
  showOnePicture();
  panel.reset();
  view.reset();
  session.reset();
  pictures.clear();  // the server's copies are gone already
  EXPECT_TRUE(runLoopUntil([&] { return own() == XCB_WINDOW_NONE; }));
}

TEST(PanelWithoutDisplayTest, RemembersItsSettings) {
  unsetenv("DISPLAY");
  const auto session = std::make_shared<XSession>(nullptr);
  const auto view = XWindowSystem(session).makeView();
  const auto panel = std::make_unique<XPanel>(session);
  EXPECT_FALSE(panel->ignoresMouseEvents());
  EXPECT_TRUE(panel->isOpaque());
  panel->configure(*view);
  panel->setFrame({0, 0, 100, 100});
  panel->orderFrontRegardless();
  view->setNeedsDisplay();
  runLoopDry();
  panel->orderOut();
  EXPECT_TRUE(panel->ignoresMouseEvents());
  EXPECT_FALSE(panel->isOpaque());
}

}  // namespace
}  // namespace vellora
