#include "base/rect.h"

#include <gtest/gtest.h>

namespace vellora {
namespace {

TEST(RectTest, RectanglesThatOnlyTouchMeetInARectangleWithoutArea) {
  const Rect left{0, 0, 10, 10};
  const Rect right{10, 0, 10, 10};
  EXPECT_TRUE(left.intersects(right));
  EXPECT_EQ(left.intersection(right), (Rect{10, 0, 0, 10}));
}

}  // namespace
}  // namespace vellora
