#include "render/pixels.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace vellora {
namespace {

TEST(PixelsTest, FractionsAreCutTowardZero) {
  EXPECT_EQ(wholePixels(439.999), 439);
  EXPECT_EQ(wholePixels(-0.75), 0);
  EXPECT_EQ(wholePixels(-2.5), -2);
}

TEST(PixelsTest, TheWholeRangeOfSixtyFourBitsIsAccepted) {
  EXPECT_EQ(wholePixels(-9223372036854775808.0), std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(wholePixels(std::nextafter(9223372036854775808.0, 0)), 9223372036854774784);
}

TEST(PixelsDeathTest, WhatIsNoNumberOfPixelsEndsTheProcess) {
  for (const double value :
       {9223372036854775808.0, -9223372036854777856.0, std::numeric_limits<double>::infinity(),
        -std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_DEATH(wholePixels(value), "not finite or out of range");
  }
}

}  // namespace
}  // namespace vellora
