#include "platform/linux/wayland/panel/standing.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace vellora {
namespace {

Output output(double scale, const Rect& place = {0, 0, 1280, 800}) {
  return {3, "", place, {std::round(place.width * scale), std::round(place.height * scale)}, scale};
}

TEST(StandingTest, AtWholeScalesTheSurfaceIsTheFrame) {
  for (const double scale : {1.0, 2.0, 3.0}) {
    const auto standing = standingOn(output(scale), {101, 53, 401, 300});
    ASSERT_TRUE(standing);
    EXPECT_EQ(standing->output, 3u);
    EXPECT_EQ(standing->left, 101);
    EXPECT_EQ(standing->top, 53);
    EXPECT_EQ(standing->width, 401);
    EXPECT_EQ(standing->height, 300);
    EXPECT_EQ(standing->pixelWidth, 401 * scale);
    EXPECT_EQ(standing->pixelHeight, 300 * scale);
    EXPECT_EQ(standing->frameX, 0);
    EXPECT_EQ(standing->frameY, 0);
    EXPECT_EQ(standing->visible, standing->surfacePixels());
  }
}

TEST(StandingTest, IsCountedFromItsOutputsCorner) {
  const auto standing = standingOn(output(1, {-1280, 200, 1280, 800}), {-1200, 260, 100, 100});
  ASSERT_TRUE(standing);
  EXPECT_EQ(standing->left, 80);
  EXPECT_EQ(standing->top, 60);
}

TEST(StandingTest, AtAScaleOfOneAndAHalfTheEdgesFallOnPixels) {
  // From pixel 151.5 to 753, and from 79.5 to 529.5: to the nearest 152 to 753, 80 to 530.
  const auto standing = standingOn(output(1.5), {101, 53, 401, 300});
  ASSERT_TRUE(standing);
  EXPECT_EQ(standing->left, 100);
  EXPECT_EQ(standing->width, 402);
  EXPECT_EQ(standing->top, 52);
  EXPECT_EQ(standing->height, 302);
  EXPECT_EQ(standing->pixelWidth, 603);
  EXPECT_EQ(standing->pixelHeight, 453);
  EXPECT_EQ(standing->frameX, 2);
  EXPECT_EQ(standing->frameY, 2);
  EXPECT_EQ(standing->visible, (PixelRect{2, 2, 601, 450}));
}

// Whatever the scale and the frame: surface edges are whole pixels, the surface holds the frame,
// the frame is where it was to be, and no edge of the surface is further from it than need be.
TEST(StandingTest, SurfacesHoldTheirFramesAtEveryScale) {
  for (const double scale : {1.0, 1.05, 1.1, 1.25, 1.5, 1.75, 2.0, 2.25, 0.5}) {
    const int step = pointsToWholePixels(scale);
    for (int i = 0; i < 200; ++i) {
      const Rect frame{i * 1.37, i * 0.71, 50 + i * 2.13, 40 + i * 1.01};
      const auto standing = standingOn(output(scale), frame);
      ASSERT_TRUE(standing);
      EXPECT_EQ(standing->left % step, 0);
      EXPECT_EQ(standing->width % step, 0);
      EXPECT_NEAR(standing->pixelWidth, standing->width * scale, 1e-6);
      EXPECT_NEAR(standing->pixelHeight, standing->height * scale, 1e-6);
      const double leftPixel = standing->left * scale;
      EXPECT_NEAR(leftPixel, std::round(leftPixel), 1e-6);
      EXPECT_EQ(std::lround(leftPixel) + standing->frameX, std::lround(frame.x * scale));
      EXPECT_EQ(std::lround(standing->top * scale) + standing->frameY,
                std::lround(frame.y * scale));
      EXPECT_GE(standing->visible.x, 0);
      EXPECT_LT(standing->visible.x, step * scale);
      EXPECT_LE(standing->visible.right(), standing->pixelWidth);
      EXPECT_GT(standing->visible.right(), standing->pixelWidth - step * scale - 1);
    }
  }
}

TEST(StandingTest, IsCutAtTheOutputsEdges) {
  const auto standing = standingOn(output(2), {-50, 700, 200, 300});
  ASSERT_TRUE(standing);
  EXPECT_EQ(standing->left, 0);
  EXPECT_EQ(standing->width, 150);
  EXPECT_EQ(standing->frameX, -100);
  EXPECT_EQ(standing->top, 700);
  EXPECT_EQ(standing->height, 100);
  EXPECT_EQ(standing->visible, (PixelRect{0, 0, 300, 200}));
}

TEST(StandingTest, NothingStandsWhereNoPixelOfTheFrameIs) {
  EXPECT_FALSE(standingOn(output(1), {1280, 0, 100, 100}));
  EXPECT_FALSE(standingOn(output(1), {0, -100, 100, 100}));
}

TEST(StandingTest, FramesThatNoSurfaceCanHaveDoNoHarm) {
  const double inf = std::numeric_limits<double>::infinity();
  for (const Rect& frame : {Rect{-1e9, -1e9, 2e9, 2e9}, Rect{-inf, -inf, inf, inf},
                            Rect{std::nan(""), 0, 10, 10}, Rect{0, 0, 1e300, 1e300}}) {
    const auto standing = standingOn(output(1.5), frame);
    if (!standing) continue;
    EXPECT_LE(standing->pixelWidth, 1920);
    EXPECT_LE(standing->pixelHeight, 1200);
    EXPECT_LE(standing->visible.right(), standing->pixelWidth);
  }
}

TEST(StandingTest, PointsThatEndWithAPixel) {
  EXPECT_EQ(pointsToWholePixels(1), 1);
  EXPECT_EQ(pointsToWholePixels(2), 1);
  EXPECT_EQ(pointsToWholePixels(1.5), 2);
  EXPECT_EQ(pointsToWholePixels(1.25), 4);
  EXPECT_EQ(pointsToWholePixels(1.05), 20);
  EXPECT_EQ(pointsToWholePixels(1.33), 1);  // a hundred, which is too many
}

}  // namespace
}  // namespace vellora
