#include <gtest/gtest.h>

#include "panel_fixture.h"

namespace vellora {
namespace {

using ViewTest = PanelFixture;

TEST(ViewWithoutDisplayTest, ABitmapHasTwoPixelsToAPointAlsoInAPanel) {
  unsetenv("DISPLAY");
  const auto session = std::make_shared<XSession>(nullptr);
  const auto view = XWindowSystem(session).makeView();
  const auto panel = std::make_unique<XPanel>(session);
  panel->configure(*view);
  view->setFrame({0, 0, 1200, 800});
  EXPECT_EQ(view->windowScale(), std::nullopt);
  EXPECT_EQ(view->bitmapForCachingDisplay()->pixelWidth(), 2400);
}

TEST(ViewWithoutDisplayTest, DrawnIntoABitmapAgainItLiesOverWhatIsThere) {
  unsetenv("DISPLAY");
  const auto view = XWindowSystem(std::make_shared<XSession>(nullptr)).makeView();
  const auto picture = plainPicture(40, 30, 0, {1, 1, 1, 0.5}, 2);
  view->setDrawFunction([&](Surface& surface) { surface.drawImage(*picture, {10, 10, 40, 30}); });
  view->setFrame({0, 0, 100, 100});
  const auto bitmap = view->bitmapForCachingDisplay();
  ASSERT_NE(bitmap, nullptr);
  view->cacheDisplay(*bitmap);
  EXPECT_NEAR(bitmap->alpha(60, 60).value(), 0.5, 0.01);
  view->cacheDisplay(*bitmap);
  EXPECT_NEAR(bitmap->alpha(60, 60).value(), 0.75, 0.01);
}

TEST(ViewWithoutDisplayTest, HasNoBitmapWithoutASize) {
  unsetenv("DISPLAY");
  const auto view = XWindowSystem(std::make_shared<XSession>(nullptr)).makeView();
  EXPECT_EQ(view->bitmapForCachingDisplay(), nullptr);
  view->setFrame({0, 0, 1e9, 10});
  EXPECT_EQ(view->bitmapForCachingDisplay(), nullptr);
}

TEST_F(ViewTest, HasTheScaleOfItsWindowOnlyWhileItIsInOne) {
  setenv("GDK_SCALE", "3", 1);
  makeSession();
  view->setFrame({0, 0, 200, 100});
  EXPECT_EQ(view->windowScale(), std::nullopt);
  EXPECT_EQ(view->bitmapForCachingDisplay()->pixelWidth(), 600);  // the main screen's
  panel->configure(*view);
  EXPECT_EQ(view->windowScale(), 3);
  EXPECT_EQ(view->bitmapForCachingDisplay()->pixelHeight(), 300);
  panel.reset();
  EXPECT_EQ(view->windowScale(), std::nullopt);
}

TEST_F(ViewTest, ManyRequestsMakeOneDrawing) {
  showOnePicture();
  drawings = 0;
  for (int i = 0; i < 5; ++i) view->setNeedsDisplay();
  EXPECT_EQ(drawings, 0);
  settle();
  EXPECT_EQ(drawings, 1);
  view->setNeedsDisplay();
  settle();
  EXPECT_EQ(drawings, 2);
}

TEST_F(ViewTest, IsNotDrawnWhileItsPanelIsHidden) {
  showOnePicture();
  view->setNeedsDisplay();
  panel->orderOut();
  drawings = 0;
  view->setNeedsDisplay();
  settle();
  EXPECT_EQ(drawings, 0);
}

TEST_F(ViewTest, ADrawingThatComesToTheSameSendsNothing) {
  showOnePicture();
  settle();
  drawings = 0;
  EXPECT_EQ(requestsDuring([&] {
              view->setNeedsDisplay();
              runLoopDry();
            }),
            0u);
  EXPECT_EQ(drawings, 1);
}

TEST_F(ViewTest, AnotherPictureInTheSamePlaceIsShown) {
  showOnePicture();
  pictures[0].picture.reset();  // its memory may be given to the next one
  pictures[0].picture = plainPicture(100, 40, 10, {0, 1, 0, 1});
  view->setNeedsDisplay();
  settle();
  EXPECT_EQ(client.pixel(200, 130), 0x00ff00u);
}

TEST_F(ViewTest, PixelsOutsideTheChangeAreLeftAlone) {
  showOnePicture();
  pictures.push_back({plainPicture(100, 40, 0, {0, 1, 0, 1}), {50, 200, 100, 40}});
  view->setNeedsDisplay();
  settle();
  client.clear(own());  // asks for a repaint, which is not served yet
  pictures[1].destination.y = 202;
  view->setNeedsDisplay();
  g_main_context_iteration(nullptr, FALSE);
  EXPECT_TRUE(runLoopUntil([&] { return client.pixel(200, 130) == 0xff0000u; }));
  EXPECT_EQ(client.pixel(200, 270), 0x00ff00u);
}

TEST_F(ViewTest, LaterPicturesLieOverEarlierOnesAndAreBlended) {
  client.own("_NET_WM_CM_S0");
  showOnePicture();
  pictures.push_back({plainPicture(100, 40, 0, {0, 0, 1, 0.5}), {100, 60, 100, 40}});
  view->setNeedsDisplay();
  settle();
  EXPECT_EQ(client.pixel(160, 120), 0xff0000u);
  const std::uint32_t both = client.pixel(220, 120);
  EXPECT_NEAR(both >> 16, 0x7f, 2);
  EXPECT_NEAR(both & 0xff, 0x80, 2);
  // Half of blue, premultiplied, over nothing.
  EXPECT_NEAR(client.pixel(290, 120) & 0xff, 0x80, 2);
}

TEST_F(ViewTest, AViewThatDoesNotBeginAtThePanelsCornerIsShiftedThere) {
  showOnePicture();
  view->setFrame({20, 10, 300, 200});
  settle();
  EXPECT_EQ(client.boundingShape(own()), std::vector<Rect>({{80, 80, 80, 20}}));
  EXPECT_EQ(client.pixel(100 + 81, 50 + 81), 0xff0000u);
}

}  // namespace
}  // namespace vellora
