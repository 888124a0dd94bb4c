#include "base/rect.h"

#include <limits>

#include <gtest/gtest.h>

namespace vellora {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

TEST(RectTest, RectanglesThatOnlyTouchMeetInARectangleWithoutArea) {
  const Rect left{0, 0, 10, 10};
  const Rect right{10, 0, 10, 10};
  EXPECT_TRUE(left.intersects(right));
  EXPECT_EQ(left.intersection(right), (Rect{10, 0, 0, 10}));
  EXPECT_FALSE(left.intersects(Rect{10.000001, 0, 1, 1}));
}

TEST(RectTest, NullContainsAndMeetsNothingAndIsInEverything) {
  const Rect some{0, 0, 10, 10};
  EXPECT_FALSE(Rect::null().contains(some));
  EXPECT_FALSE(Rect::null().intersects(some));
  EXPECT_FALSE(some.intersects(Rect::null()));
  EXPECT_FALSE(Rect::null().contains(Point{0, 0}));
  EXPECT_TRUE(some.contains(Rect::null()));
  EXPECT_TRUE(Rect::null().contains(Rect::null()));
  EXPECT_TRUE(Rect::null().isNull());
  EXPECT_TRUE(Rect::null().isEmpty());
  EXPECT_FALSE(some == Rect::null());
}

TEST(RectTest, PointOnTheLeftOrTopEdgeIsInsideOnTheOthersOutside) {
  const Rect some{5, 5, 10, 10};
  EXPECT_TRUE(some.contains(Point{5, 5}));
  EXPECT_FALSE(some.contains(Point{15, 5}));
  EXPECT_FALSE(some.contains(Point{5, 15}));
  EXPECT_FALSE((Rect{5, 5, 0, 10}).contains(Point{5, 5}));
}

TEST(RectTest, NegativeSizesAreTurnedRound) {
  const Rect turned{10, 20, -10, -20};
  EXPECT_EQ(turned.minX(), 0);
  EXPECT_EQ(turned.maxX(), 10);
  EXPECT_EQ(turned.midY(), 10);
  EXPECT_EQ(turned.absoluteHeight(), 20);
  EXPECT_EQ(turned.standardized().width, 10);
  EXPECT_TRUE(turned == (Rect{0, 0, 10, 20}));
  EXPECT_TRUE(turned.contains(Point{0, 0}));
  EXPECT_EQ(turned.offsetBy(1, 2), (Rect{1, 2, 10, 20}));
}

TEST(RectTest, PartsOfARectangleAtInfinityOnOneAxisAreItsFields) {
  const Rect far{infinity, 0, 10, 10};
  EXPECT_TRUE(far.isNull());
  EXPECT_EQ(far.midX(), infinity);
  EXPECT_EQ(far.midY(), 5);
  EXPECT_EQ(far.maxY(), 10);
  EXPECT_EQ(far.absoluteWidth(), 10);
  EXPECT_TRUE(far.standardized().isNull());
  EXPECT_TRUE(far == Rect::null());
}

TEST(RectTest, InsetThatLeavesLessThanNothingIsNull) {
  EXPECT_EQ((Rect{0, 0, 20, 10}).insetBy(9, 4), (Rect{9, 4, 2, 2}));
  EXPECT_EQ((Rect{0, 0, 18, 8}).insetBy(9, 4), (Rect{9, 4, 0, 0}));
  EXPECT_TRUE((Rect{0, 0, 17, 10}).insetBy(9, 4).isNull());
  EXPECT_EQ((Rect{0, 0, 10, 10}).insetBy(-1, -1), (Rect{-1, -1, 12, 12}));
}

}  // namespace
}  // namespace vellora
