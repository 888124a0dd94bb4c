#include "render/geometry.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace vellora {
namespace {

constexpr double nan = std::numeric_limits<double>::quiet_NaN();

const Rect viewport{100, 200, 600, 800};
const Rect row{150, 400, 300, 30};
const Rect next{150, 470, 200, 30};

std::optional<Rect> label(const Rect& r, const std::optional<Rect>& n, double height,
                          double offset = 0) {
  return OverlayGeometry::labelRect(r, n, viewport, height, offset);
}

TEST(AppKitRectTest, MirrorsAboutThePrimaryScreensHeight) {
  EXPECT_EQ(OverlayGeometry::appKitRect({10, 20, 300, 40}, 1000), (Rect{10, 940, 300, 40}));
  EXPECT_EQ(OverlayGeometry::appKitRect({-500, -100, 300, 40}, 0), (Rect{-500, 60, 300, 40}));
}

TEST(AppKitRectTest, TurnsNegativeSizesRound) {
  const Rect turned = OverlayGeometry::appKitRect({310, 60, -300, -40}, 1000);
  EXPECT_EQ(turned.x, 10);
  EXPECT_EQ(turned.y, 940);
  EXPECT_EQ(turned.width, 300);
  EXPECT_EQ(turned.height, 40);
}

TEST(LabelRectTest, CaptionStandsTwoPointsUnderItsRow) {
  EXPECT_EQ(label(row, next, 30), (Rect{152, 432, 526, 30}));
}

TEST(LabelRectTest, CaptionThatNeedsMoreThanTheRoomIsDropped) {
  EXPECT_TRUE(label(row, next, 35));
  EXPECT_FALSE(label(row, next, 35.5));
  EXPECT_FALSE(label(row, next, 36));
}

TEST(LabelRectTest, OffsetMovesTheCaption) {
  EXPECT_EQ(label(row, next, 30, -10), (Rect{152, 422, 526, 30}));
  EXPECT_EQ(label(row, next, 30, 5), (Rect{152, 437, 526, 30}));
  EXPECT_FALSE(label(row, next, 30, 5.5));
}

TEST(LabelRectTest, RowMustBeWiderThanFortyPoints) {
  EXPECT_FALSE(label({150, 400, 40, 30}, next, 30));
  EXPECT_TRUE(label({150, 400, 40.5, 30}, next, 30));
  EXPECT_TRUE(label({190.5, 430, -40.5, -30}, next, 30));
}

TEST(LabelRectTest, WithoutANextRowTheViewportsBottomIsTheLimit) {
  // top = 932, so 65 points fit above 1000 - 3.
  const Rect last{150, 900, 300, 30};
  EXPECT_EQ(label(last, std::nullopt, 65), (Rect{152, 932, 526, 65}));
  EXPECT_FALSE(label(last, std::nullopt, 65.5));
}

TEST(LabelRectTest, NextRowAboveTheViewportsBottomIsTheLimit) {
  const Rect last{150, 900, 300, 30};
  const Rect inside{150, 960, 300, 30};
  EXPECT_TRUE(label(last, inside, 25));
  EXPECT_FALSE(label(last, inside, 26));
}

TEST(LabelRectTest, NextRowBelowTheViewportsBottomLeavesTheViewportsLimit) {
  const Rect last{150, 900, 300, 30};
  const Rect beyond{150, 1200, 300, 30};
  EXPECT_TRUE(label(last, beyond, 65));
  EXPECT_FALSE(label(last, beyond, 66));
}

TEST(LabelRectTest, RowLeftOfTheViewportTakesTheViewportsLeftEdge) {
  EXPECT_EQ(label({0, 400, 300, 30}, next, 30), (Rect{102, 432, 576, 30}));
}

TEST(LabelRectTest, RightEdgeIsTwentyTwoPointsInsideWhateverTheRowsWidth) {
  for (const double width : {50.0, 300.0, 500.0, 900.0}) {
    const std::optional<Rect> placed = label({150, 400, width, 30}, next, 30);
    ASSERT_TRUE(placed) << width;
    EXPECT_EQ(placed->maxX(), 678) << width;
  }
}

TEST(LabelRectTest, CaptionNarrowerThanEightyPointsIsDropped) {
  // width = 700 - left - 24.
  EXPECT_EQ(label({596, 400, 100, 30}, next, 30), (Rect{598, 432, 80, 30}));
  EXPECT_FALSE(label({596.5, 400, 100, 30}, next, 30));
}

TEST(LabelRectTest, ViewportOfHundredPointsHoldsNoCaptionFromItsLeftEdge) {
  const Rect narrow{0, 0, 100, 1000};
  EXPECT_FALSE(OverlayGeometry::labelRect({0, 100, 60, 20}, std::nullopt, narrow, 20, 0));
  EXPECT_TRUE(
      OverlayGeometry::labelRect({0, 100, 60, 20}, std::nullopt, Rect{0, 0, 104, 1000}, 20, 0));
}

TEST(LabelRectTest, RowsMiddleMustBeInsideTheViewport) {
  EXPECT_FALSE(label({150, 184, 300, 30}, std::nullopt, 20));   // middle at 199
  EXPECT_TRUE(label({150, 185, 300, 30}, std::nullopt, 20));    // middle at 200, the top edge
  EXPECT_TRUE(label({-49, 400, 300, 30}, next, 20));            // middle at 101
  EXPECT_FALSE(label({-51, 400, 300, 30}, next, 20));           // middle at 99
  EXPECT_FALSE(label({550, 400, 300, 30}, next, 20));           // middle at 700, the right edge
  EXPECT_FALSE(label({150, 985, 300, 30}, std::nullopt, -40));  // middle at 1000, the bottom edge
}

TEST(LabelRectTest, CaptionPushedAboveTheViewportIsDropped) {
  const Rect first{150, 200, 300, 30};
  EXPECT_TRUE(label(first, next, 30, -32));
  EXPECT_FALSE(label(first, next, 30, -32.5));
}

TEST(LabelRectTest, NumbersThatAreNoneGiveNoCaption) {
  EXPECT_FALSE(label(row, next, nan));
  EXPECT_FALSE(label(row, next, 30, nan));
  EXPECT_FALSE(label({nan, 400, 300, 30}, next, 30));
  EXPECT_FALSE(label({150, 400, 300, nan}, next, 30));
  EXPECT_FALSE(OverlayGeometry::labelRect(row, next, {100, 200, 600, nan}, 30, 0));
  EXPECT_FALSE(OverlayGeometry::labelRect(row, next, Rect::null(), 30, 0));
}

TEST(LabelRectTest, NextRowAtNoNumberLeavesTheViewportsLimit) {
  EXPECT_TRUE(label(row, Rect{150, nan, 300, 30}, 500));
}

const Rect thousand{0, 0, 400, 1000};

double softnessAt(double top) { return OverlayFocus::softness({0, top, 300, 30}, thousand); }

TEST(SoftnessTest, RowOnTheReadingLineIsSharp) {
  EXPECT_EQ(softnessAt(350), 0);
  EXPECT_EQ(softnessAt(405), 0);
  EXPECT_EQ(softnessAt(295), 0);
}

TEST(SoftnessTest, GrowsInEighthsWithTheDistance) {
  EXPECT_EQ(softnessAt(475), 0.5);
  EXPECT_EQ(softnessAt(225), 0.5);
  EXPECT_EQ(softnessAt(422.5), 0.125);
  for (double top = 0; top < 1000; top += 0.5) {
    const double eighths = softnessAt(top) * 8;
    EXPECT_EQ(eighths, std::floor(eighths)) << top;
    EXPECT_GE(eighths, 0) << top;
    EXPECT_LE(eighths, 8) << top;
  }
}

TEST(SoftnessTest, RoundsToTheNearestEighth) {
  // t is 0.06 and 0.07 there, and eighths of it 0.48 and 0.56.
  EXPECT_EQ(softnessAt(413.4), 0);
  EXPECT_EQ(softnessAt(414.8), 0.125);
}

TEST(SoftnessTest, HalvesRoundAwayFromZero) {
  // Eighths of t are 0.5, 2.5 and 4.5 there, without a rounding error.
  EXPECT_EQ(softnessAt(413.75), 0.125);
  EXPECT_EQ(softnessAt(448.75), 0.375);
  EXPECT_EQ(softnessAt(483.75), 0.625);
}

TEST(SoftnessTest, IsWholeFromTheEndOfTheRamp) {
  EXPECT_EQ(softnessAt(545), 1);
  EXPECT_EQ(softnessAt(999), 1);
  EXPECT_EQ(softnessAt(155), 1);
  EXPECT_EQ(softnessAt(0), 1);
  EXPECT_EQ(softnessAt(1000), 1);  // it still touches the viewport
}

TEST(SoftnessTest, IsMeasuredFromTheRowsTopInTheViewportsHeights) {
  const Rect small{50, 100, 400, 200};  // reading line at 170
  EXPECT_EQ(OverlayFocus::softness({60, 170, 300, 100}, small), 0);
  EXPECT_EQ(OverlayFocus::softness({60, 195, 300, 10}, small), 0.5);
  EXPECT_EQ(OverlayFocus::softness({60, 205, 300, -10}, small), 0.5);
}

TEST(SoftnessTest, RowOutsideTheViewportIsSharp) {
  EXPECT_EQ(softnessAt(1000.5), 0);
  EXPECT_EQ(softnessAt(-31), 0);
  EXPECT_EQ(OverlayFocus::softness({500, 900, 300, 30}, thousand), 0);
  EXPECT_EQ(OverlayFocus::softness(Rect::null(), thousand), 0);
}

TEST(SoftnessTest, ViewportWithoutHeightMakesEverythingSharp) {
  EXPECT_EQ(OverlayFocus::softness({0, 0, 300, 30}, {0, 0, 400, 0}), 0);
  EXPECT_EQ(OverlayFocus::softness({0, -10, 300, 30}, {0, 0, 400, 0}), 0);
  EXPECT_EQ(OverlayFocus::softness({0, 0, 300, 30}, {0, 0, 400, nan}), 0);
}

TEST(SoftnessTest, RowAtNoNumberIsSharp) {
  EXPECT_EQ(OverlayFocus::softness({0, nan, 300, 30}, thousand), 0);
}

}  // namespace
}  // namespace vellora
