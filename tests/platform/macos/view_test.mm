#import "platform/macos/view.h"

#include <memory>

#import <AppKit/AppKit.h>
#include <gtest/gtest.h>

#import "platform/macos/drawing.h"
#import "platform/macos/panel.h"

namespace vellora {
namespace {

// A picture that is half transparent all over.
std::shared_ptr<const CaptionImage> plainPicture(double width, double height) {
  CaptionDrawing drawing;
  drawing.size = {width, height};
  drawing.pixelWidth = static_cast<std::int64_t>(width);
  drawing.pixelHeight = static_cast<std::int64_t>(height);
  drawing.plate = {0, 0, width, height};
  drawing.plateColor = {1, 1, 1, 0.5};
  drawing.textRect = {0, 0, 1, 1};
  drawing.fontSize = 10;
  return makeAppKitPainter()->paint(drawing);
}

class ViewTest : public ::testing::Test {
 protected:
  void SetUp() override {
    [NSApplication sharedApplication];
    view.setFrame({0, 0, 1200, 800});
  }

  AppKitView view;
};

TEST_F(ViewTest, IsFlipped) { EXPECT_TRUE(view.view().flipped); }

TEST_F(ViewTest, BoundsBeginAtZeroWhereverTheViewLies) {
  view.setFrame({30, 40, 500, 600});
  EXPECT_EQ(view.bounds(), (Rect{0, 0, 500, 600}));
}

TEST_F(ViewTest, DrawsIntoABitmapFromItsTopLeft) {
  const auto picture = plainPicture(100, 50);
  ASSERT_TRUE(picture);
  int drawings = 0;
  view.setDrawFunction([&](Surface& surface) {
    ++drawings;
    surface.drawImage(*picture, {200, 300, 100, 50});
  });
  const auto bitmap = view.bitmapForCachingDisplay();
  ASSERT_TRUE(bitmap);
  const auto scale = bitmap->pixelWidth() / 1200;
  EXPECT_EQ(bitmap->pixelWidth(), 1200 * scale);
  EXPECT_EQ(bitmap->pixelHeight(), 800 * scale);
  view.cacheDisplay(*bitmap);
  EXPECT_EQ(drawings, 1);
  EXPECT_NEAR(bitmap->alpha(210 * scale, 310 * scale).value_or(-1), 0.5, 0.01);
  EXPECT_NEAR(bitmap->alpha(290 * scale, 340 * scale).value_or(-1), 0.5, 0.01);
  EXPECT_EQ(bitmap->alpha(195 * scale, 310 * scale), 0.0);
  EXPECT_EQ(bitmap->alpha(210 * scale, 295 * scale), 0.0);
  EXPECT_EQ(bitmap->alpha(305 * scale, 340 * scale), 0.0);
  EXPECT_EQ(bitmap->alpha(290 * scale, 355 * scale), 0.0);
  // Mirrored at the middle there is nothing.
  EXPECT_EQ(bitmap->alpha(210 * scale, 475 * scale), 0.0);
}

TEST_F(ViewTest, ABitmapHasNoPixelsOutside) {
  const auto bitmap = view.bitmapForCachingDisplay();
  ASSERT_TRUE(bitmap);
  EXPECT_EQ(bitmap->alpha(-1, 0), std::nullopt);
  EXPECT_EQ(bitmap->alpha(0, -1), std::nullopt);
  EXPECT_EQ(bitmap->alpha(bitmap->pixelWidth(), 0), std::nullopt);
  EXPECT_EQ(bitmap->alpha(0, bitmap->pixelHeight()), std::nullopt);
}

TEST_F(ViewTest, ABitmapIsEncodedAsPng) {
  const auto bitmap = view.bitmapForCachingDisplay();
  ASSERT_TRUE(bitmap);
  const auto png = bitmap->png();
  ASSERT_TRUE(png);
  ASSERT_GT(png->size(), 8u);
  // The signature of the PNG standard (ISO/IEC 15948).
  EXPECT_EQ(std::vector<std::uint8_t>(png->begin(), png->begin() + 8),
            (std::vector<std::uint8_t>{0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'}));
}

TEST_F(ViewTest, HasTheScaleOfItsWindowOnlyWhileItIsInOne) {
  EXPECT_EQ(view.windowScale(), std::nullopt);
  AppKitPanel panel;
  panel.configure(view);
  EXPECT_EQ(view.windowScale(), view.view().window.backingScaleFactor);
  EXPECT_GE(view.windowScale().value_or(0), 1);
}

}  // namespace
}  // namespace vellora
