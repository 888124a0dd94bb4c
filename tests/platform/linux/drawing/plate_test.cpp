#include "platform/linux/drawing/plate.h"

#include <cmath>
#include <limits>
#include <numbers>

#include <gtest/gtest.h>

#include "platform/linux/drawing/cairo_picture.h"
#include "platform/linux/drawing/cairo_surface.h"

namespace vellora {
namespace {

constexpr Color opaque{1, 0.5, 0, 1};

Picture plateOf(const Rect& rect, double radius, const Color& color = opaque) {
  const CairoSurfacePtr pixels = makePixels(100, 60);
  fillPlate(pixels.get(), rect, radius, color);
  return pictureOf(pixels.get());
}

TEST(PlateTest, ItLooksAsCairosOwnPathDoes) {
  const Rect rects[] = {
      {10, 10, 80, 40}, {10.5, 10.25, 70.25, 30.5}, {3, 3, 10, 50}, {5, 5, 90, 9}};
  for (const Rect& rect : rects) {
    for (const double radius : {0.0, 3.5, 7.0, 14.0}) {
      const CairoSurfacePtr pixels = makePixels(100, 60);
      const CairoContextPtr context(cairo_create(pixels.get()));
      const double r = std::min({radius, rect.width / 2, rect.height / 2});
      constexpr double quarter = std::numbers::pi / 2;
      cairo_arc(context.get(), rect.maxX() - r, rect.y + r, r, -quarter, 0);
      cairo_arc(context.get(), rect.maxX() - r, rect.maxY() - r, r, 0, quarter);
      cairo_arc(context.get(), rect.x + r, rect.maxY() - r, r, quarter, 2 * quarter);
      cairo_arc(context.get(), rect.x + r, rect.y + r, r, 2 * quarter, 3 * quarter);
      cairo_set_source_rgb(context.get(), opaque.red, opaque.green, opaque.blue);
      cairo_fill(context.get());

      const Picture expected = pictureOf(pixels.get());
      const Picture picture = plateOf(rect, radius);
      for (std::int64_t y = 0; y < 60; ++y) {
        for (std::int64_t x = 0; x < 100; ++x) {
          ASSERT_NEAR(picture.alpha(x, y), expected.alpha(x, y), 0.13)
              << x << ", " << y << " radius " << radius;
          ASSERT_NEAR(picture.green(x, y), picture.alpha(x, y) / 2, 1.0 / 255);
        }
      }
    }
  }
}

TEST(PlateTest, ARadiusThatIsNoneIsZero) {
  const Rect rect{10.5, 10.25, 70.25, 30.5};
  const Picture sharp = plateOf(rect, 0);
  constexpr double infinity = std::numeric_limits<double>::infinity();
  for (const double radius : {std::nan(""), -9.0, -1e300, -infinity}) {
    const Picture picture = plateOf(rect, radius);
    for (std::int64_t y = 0; y < 60; ++y) {
      for (std::int64_t x = 0; x < 100; ++x) {
        ASSERT_EQ(picture.alpha(x, y), sharp.alpha(x, y)) << x << ", " << y << " radius " << radius;
      }
    }
  }
}

TEST(PlateTest, ACornerLargerThanThePictureIsCut) {
  EXPECT_EQ(plateOf({-1e300, -1e300, 2e300, 2e300}, 1e299).alpha(50, 30), 1);
}

TEST(PlateTest, EdgesOnWholePixelsAreSharp) {
  const Picture picture = plateOf({10, 10, 80, 40}, 7);
  EXPECT_EQ(picture.bounds(), (Box{10, 10, 89, 49}));
  EXPECT_EQ(picture.alpha(10, 30), 1);
  EXPECT_EQ(picture.alpha(89, 30), 1);
  EXPECT_EQ(picture.alpha(50, 10), 1);
  EXPECT_EQ(picture.alpha(50, 49), 1);
}

TEST(PlateTest, EdgesBetweenPixelsCoverTheirPart) {
  const Picture picture = plateOf({10.5, 10.25, 80, 40}, 7);
  EXPECT_NEAR(picture.alpha(10, 30), 0.5, 1.0 / 255);
  EXPECT_NEAR(picture.alpha(90, 30), 0.5, 1.0 / 255);
  EXPECT_NEAR(picture.alpha(50, 10), 0.75, 1.0 / 255);
  EXPECT_NEAR(picture.alpha(50, 50), 0.25, 1.0 / 255);
}

TEST(PlateTest, TheFourCornersAreAlike) {
  const Picture picture = plateOf({10, 10, 80, 40}, 14);
  for (std::int64_t y = 0; y < 60; ++y) {
    for (std::int64_t x = 0; x < 100; ++x) {
      ASSERT_EQ(picture.alpha(x, y), picture.alpha(99 - x, y));
      ASSERT_EQ(picture.alpha(x, y), picture.alpha(x, 59 - y));
    }
  }
}

TEST(PlateTest, WhatLiesOutsideThePictureIsCut) {
  EXPECT_EQ(plateOf({-50, -50, 500, 500}, 7).bounds(), (Box{0, 0, 99, 59}));
  EXPECT_EQ(plateOf({200, 10, 50, 20}, 7).largestAlpha(), 0);
  EXPECT_EQ(plateOf({-1e300, 10, 2e300, 20}, 7).bounds(), (Box{0, 10, 99, 29}));
}

TEST(PlateTest, APlateWithoutAreaOrNumbersIsNone) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (const Rect& rect : {Rect{10.5, 10, 0, 20}, Rect{10, 10.25, 20, 0}, Rect{nan, 10, 20, 20},
                           Rect{10, 10, 20, nan}, Rect::null()}) {
    EXPECT_EQ(plateOf(rect, 7).largestAlpha(), 0);
  }
}

TEST(PlateTest, AnAlphaBeyondItsRangeIsBounded) {
  EXPECT_EQ(plateOf({10, 10, 80, 40}, 7, {1, 1, 1, -0.5}).largestAlpha(), 0);
  EXPECT_EQ(plateOf({10, 10, 80, 40}, 7, {0, 0, 0, 7}).alpha(50, 30), 1);
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_EQ(plateOf({10, 10, 80, 40}, 7, {1, 1, 1, nan}).largestAlpha(), 0);
}

}  // namespace
}  // namespace vellora
