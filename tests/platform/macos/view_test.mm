#import "platform/macos/view.h"

#import <AppKit/AppKit.h>
#include <gtest/gtest.h>

#import "platform/macos/drawing.h"
#import "platform/macos/panel.h"
#include "support/caption_drawing.h"

namespace vellora {
namespace {

TEST(ViewTest, IsFlipped) { EXPECT_TRUE(AppKitView().view().flipped); }

TEST(ViewTest, HasTheScaleOfItsWindow) {
  [NSApplication sharedApplication];
  AppKitView view;
  AppKitPanel panel;
  panel.configure(view);
  EXPECT_EQ(view.windowScale(), view.view().window.backingScaleFactor);
}

TEST(PainterTest, APictureOfTwoPixelsToAPointHasItsSizeInPointsAlsoBlurred) {
  const auto painter = makeAppKitPainter();
  const auto sharp = painter->paint(captionDrawing("", 200, 30, 24, 2));
  ASSERT_TRUE(sharp);
  const auto blurred = painter->blur(*sharp, 2.6);
  ASSERT_TRUE(blurred);
  for (const auto& image : {sharp, blurred}) {
    const NSSize size = static_cast<const AppKitImage&>(*image).image().size;
    EXPECT_EQ(size.width, 220);
    EXPECT_EQ(size.height, 50);
  }
}

}  // namespace
}  // namespace vellora
