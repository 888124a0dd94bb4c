#include "platform/linux/accessibility/window_placement.h"

#include <optional>

#include <gtest/gtest.h>

namespace vellora {
namespace {

PlayerWindow windowAt(std::optional<Rect> clientArea, double scale = 1) {
  return {.process = 1, .descriptions = {}, .clientArea = clientArea, .scale = scale};
}

constexpr AccessibleExtents row{16, 35, 388, 24};

TEST(WindowPlacementTest, PlacesOnTheScreenStandAsTheyAre) {
  const WindowPlacement placement({430, 178, 420, 460}, windowAt(Rect{430, 178, 420, 460}));
  EXPECT_EQ(placement.place(row), Rect({16, 35, 388, 24}));
}

TEST(WindowPlacementTest, PlacesInDevicePixelsBecomePoints) {
  const WindowPlacement placement({860, 356, 840, 920}, windowAt(Rect{860, 356, 840, 920}, 2));
  EXPECT_EQ(placement.place({900, 400, 100, 50}), Rect({450, 200, 50, 25}));
}

TEST(WindowPlacementTest, PlacesInAWindowGetTheWindows) {
  const WindowPlacement placement({0, 0, 420, 460}, windowAt(Rect{430, 178, 420, 460}));
  EXPECT_EQ(placement.place(row), Rect({446, 213, 388, 24}));
  EXPECT_EQ(placement.place({0, 0, 420, 460}), Rect({430, 178, 420, 460}));
  const WindowPlacement leftOfTheScreen({0, 0, 420, 460}, windowAt(Rect{-100, -20, 420, 460}));
  EXPECT_EQ(leftOfTheScreen.place(row), Rect({-84, 15, 388, 24}));
}

TEST(WindowPlacementTest, SoDoThoseInLogicalPixelsAtAnotherScale) {
  const WindowPlacement placement({0, 0, 420, 460}, windowAt(Rect{861, 356, 840, 920}, 2));
  EXPECT_EQ(placement.place(row), Rect({446.5, 213, 388, 24}));
}

TEST(WindowPlacementTest, SoDoThoseInDevicePixelsAtAnotherScale) {
  const WindowPlacement placement({0, 0, 840, 920}, windowAt(Rect{860, 356, 840, 920}, 2));
  EXPECT_EQ(placement.place({32, 70, 776, 48}), Rect({446, 213, 388, 24}));
}

// GTK 4 without a compositor or a window manager that leaves the shadow to it: 5 pixels around.
TEST(WindowPlacementTest, WhatIsAroundTheFrameIsTheBorder) {
  const WindowPlacement placement({0, 0, 410, 450}, windowAt(Rect{430, 170, 420, 460}));
  EXPECT_EQ(placement.place({16, 81, 378, 24}), Rect({451, 256, 378, 24}));
  // What is left besides the same border below is the title bar.
  const WindowPlacement titled({0, 0, 410, 420}, windowAt(Rect{430, 170, 420, 460}));
  EXPECT_EQ(titled.place({16, 81, 378, 24}), Rect({451, 286, 378, 24}));
}

// The frame has the window manager's decorations in it, as GTK 3's has.
TEST(WindowPlacementTest, AWindowInTheScreensCornerIsAtTheOriginItself) {
  const WindowPlacement placement({0, 0, 422, 487}, windowAt(Rect{1, 22, 420, 460}));
  EXPECT_EQ(placement.place(row), Rect({16, 35, 388, 24}));
  const WindowPlacement bare({0, 0, 420, 460}, windowAt(Rect{0, 0, 420, 460}));
  EXPECT_EQ(bare.place(row), Rect({16, 35, 388, 24}));
}

TEST(WindowPlacementTest, WhereTheWindowSystemDoesNotTellNothingIsAdded) {
  const WindowPlacement placement({0, 0, 420, 460}, windowAt(std::nullopt, 2));
  EXPECT_EQ(placement.place(row), Rect({16, 35, 388, 24}));
  const WindowPlacement withoutScale({0, 0, 420, 460}, windowAt(Rect{430, 178, 420, 460}, 0));
  EXPECT_EQ(withoutScale.place(row), Rect({16, 35, 388, 24}));
}

}  // namespace
}  // namespace vellora
