#import "platform/macos/panel.h"

#include <limits>

#import <AppKit/AppKit.h>
#include <gtest/gtest.h>

#import "platform/macos/view.h"

namespace vellora {
namespace {

class PanelTest : public ::testing::Test {
 protected:
  void SetUp() override {
    [NSApplication sharedApplication];
    panel.configure(view);
    window = view.view().window;
  }

  AppKitView view;
  AppKitPanel panel;
  NSWindow* window = nil;
};

TEST_F(PanelTest, IsAPanelThatNeverTakesTheKeyboard) {
  EXPECT_TRUE([window isKindOfClass:[OverlayPanel class]]);
  EXPECT_FALSE(window.canBecomeKeyWindow);
  EXPECT_FALSE(window.canBecomeMainWindow);
  EXPECT_EQ(window.styleMask, NSWindowStyleMaskNonactivatingPanel);
}

TEST_F(PanelTest, IsTransparentWithoutAShadow) {
  EXPECT_FALSE(window.hasShadow);
  EXPECT_EQ(window.backgroundColor.alphaComponent, 0);
}

TEST_F(PanelTest, FloatsOnEverySpaceWhateverProgramIsActive) {
  EXPECT_FALSE(window.hidesOnDeactivate);
  EXPECT_EQ(window.level, 3);
  EXPECT_EQ(window.collectionBehavior, 321u);
}

TEST_F(PanelTest, TheViewFillsThePanel) {
  panel.setFrame({100, 150, 400, 300});
  EXPECT_TRUE(NSEqualRects(window.frame, NSMakeRect(100, 150, 400, 300)));
  EXPECT_EQ(window.contentView, view.view());
  EXPECT_EQ(view.bounds(), (Rect{0, 0, 400, 300}));
}

TEST_F(PanelTest, IsShownWithoutTakingTheKeyboard) {
  panel.setFrame({100, 150, 400, 300});
  panel.orderFrontRegardless();
  EXPECT_FALSE(window.keyWindow);
}

TEST_F(PanelTest, StaysWhereItIsRatherThanGoNowhere) {
  panel.setFrame({100, 150, 400, 300});
  const double infinity = std::numeric_limits<double>::infinity();
  panel.setFrame({infinity, infinity, 0, 0});
  panel.setFrame({0, std::numeric_limits<double>::quiet_NaN(), 10, 10});
  panel.setFrame({0, 1e10, 10, 10});
  EXPECT_TRUE(NSEqualRects(window.frame, NSMakeRect(100, 150, 400, 300)));
}

}  // namespace
}  // namespace vellora
