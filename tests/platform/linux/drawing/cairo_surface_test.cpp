#include "platform/linux/drawing/cairo_surface.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>

#include <gtest/gtest.h>

#include "platform/linux/drawing/cairo_picture.h"
#include "platform/linux/drawing/pango_painter.h"
#include "render/caption_view.h"
#include "support/fake_native_view.h"
#include "support/fake_workspace.h"

namespace vellora {
namespace {

// An evenly coloured picture of `width` × `height` points at `scale`, a plate in its middle.
CairoImage evenImage(double width, double height, double scale, double alpha) {
  CairoSurfacePtr pixels = makePixels(static_cast<std::int64_t>(width * scale),
                                      static_cast<std::int64_t>(height * scale));
  const CairoContextPtr context(cairo_create(pixels.get()));
  cairo_set_source_rgba(context.get(), 1, 0, 0, alpha);
  cairo_paint(context.get());
  return {std::move(pixels), {width, height}, {10, 10, width - 20, height - 20}};
}

class CairoSurfaceTest : public ::testing::Test {
 protected:
  std::unique_ptr<CairoBitmap> bitmap = CairoBitmap::make(200, 100);
  Picture result() const { return pictureOf(bitmap->pixels()); }
};

TEST_F(CairoSurfaceTest, ThePictureStandsWhereItWasPut) {
  CairoSurface surface(bitmap->pixels(), 1);
  surface.drawImage(evenImage(40, 30, 1, 0.5), {20, 10, 40, 30});
  EXPECT_EQ(result().bounds(), (Box{20, 10, 59, 39}));
  EXPECT_NEAR(result().alpha(30, 20), 0.5, 1.0 / 255);
}

TEST_F(CairoSurfaceTest, AtScaleTwoPointsAreTwoPixels) {
  CairoSurface surface(bitmap->pixels(), 2);
  surface.drawImage(evenImage(40, 30, 2, 0.5), {20, 10, 40, 30});
  EXPECT_EQ(result().bounds(), (Box{40, 20, 119, 79}));
}

TEST_F(CairoSurfaceTest, BetweenPixelsThePictureMovesToTheNextWholeOne) {
  CairoSurface surface(bitmap->pixels(), 1);
  surface.drawImage(evenImage(40, 30, 1, 0.5), {20.4, 10.6, 40, 30});
  EXPECT_EQ(result().bounds(), (Box{20, 11, 59, 40}));
}

TEST_F(CairoSurfaceTest, OverlappingPicturesAreBlendedLaterOverEarlier) {
  CairoSurface surface(bitmap->pixels(), 1);
  surface.drawImage(evenImage(40, 30, 1, 0.5), {20, 10, 40, 30});
  surface.drawImage(evenImage(40, 30, 1, 0.5), {40, 20, 40, 30});
  EXPECT_NEAR(result().alpha(30, 15), 0.5, 1.0 / 255);
  EXPECT_NEAR(result().alpha(50, 30), 0.75, 2.0 / 255);
  EXPECT_NEAR(result().alpha(70, 40), 0.5, 1.0 / 255);
}

TEST_F(CairoSurfaceTest, APictureOfAnotherSizeIsStretched) {
  CairoSurface surface(bitmap->pixels(), 1);
  surface.drawImage(evenImage(40, 30, 1, 0.5), {20, 10, 80, 60});
  EXPECT_NEAR(result().alpha(90, 60), 0.5, 1.0 / 255);
}

TEST_F(CairoSurfaceTest, APictureCutToWholePixelsIsNotStretched) {
  // 40.6 × 30.6 points, 40 × 30 pixels.
  CairoSurface surface(bitmap->pixels(), 1);
  surface.drawImage(evenImage(40.6, 30.6, 1, 0.5), {20, 10, 40.6, 30.6});
  EXPECT_EQ(result().bounds(), (Box{20, 10, 59, 39}));
  EXPECT_EQ(result().alpha(59, 39), result().alpha(30, 20));
}

TEST_F(CairoSurfaceTest, PlacesThatAreNoneOrOutOfReachShowNothing) {
  CairoSurface surface(bitmap->pixels(), 1);
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (const Rect& place : {Rect::null(), Rect{nan, 10, 40, 30}, Rect{20, 10, nan, 30},
                            Rect{20, 10, 0, 30}, Rect{1e12, 10, 40, 30}, Rect{20, -1e12, 40, 30}}) {
    surface.drawImage(evenImage(40, 30, 1, 0.5), place);
  }
  EXPECT_EQ(result().largestAlpha(), 0);
}

TEST_F(CairoSurfaceTest, APictureShrunkToNextToNothingShowsNothing) {
  CairoSurface surface(bitmap->pixels(), 1);
  for (const double length : {1e-3, 1e-100, 8e-315, std::numeric_limits<double>::denorm_min()}) {
    surface.drawImage(evenImage(40, 30, 1, 0.5), {20, 10, length, 30});
    surface.drawImage(evenImage(40, 30, 1, 0.5), {20, 10, 40, length});
    surface.drawImage(evenImage(40, 30, 1, 0.5), {20, 10, length, length});
  }
  EXPECT_EQ(result().largestAlpha(), 0);
  surface.drawImage(evenImage(40, 30, 1, 0.5), {20, 10, 40, 30});  // as ever afterwards
  EXPECT_EQ(result().bounds(), (Box{20, 10, 59, 39}));
}

TEST(CairoSurfaceOverContentTest, WhatIsThereShowsThrough) {
  const auto bitmap = CairoBitmap::make(60, 60);
  const CairoContextPtr context(cairo_create(bitmap->pixels()));
  cairo_set_source_rgb(context.get(), 0, 0, 1);
  cairo_paint(context.get());
  CairoSurface surface(bitmap->pixels(), 1);
  surface.drawImage(evenImage(40, 30, 1, 0.5), {0, 0, 40, 30});
  const Picture picture = pictureOf(bitmap->pixels());
  EXPECT_EQ(picture.alpha(20, 20), 1);
  EXPECT_NEAR(picture.blue(20, 20), 0.5, 2.0 / 255);
  EXPECT_EQ(picture.blue(50, 50), 1);
}

TEST(CairoBitmapTest, ThereIsNoneOfAnImpossibleSize) {
  EXPECT_FALSE(CairoBitmap::make(0, 10));
  EXPECT_FALSE(CairoBitmap::make(10, -1));
  EXPECT_FALSE(CairoBitmap::make(32768, 10));
}

struct Reading {
  const std::vector<std::uint8_t>& bytes;
  std::size_t next = 0;
};

cairo_status_t read(void* closure, unsigned char* data, unsigned int length) {
  auto& reading = *static_cast<Reading*>(closure);
  if (reading.bytes.size() - reading.next < length) return CAIRO_STATUS_READ_ERROR;
  std::memcpy(data, reading.bytes.data() + reading.next, length);
  reading.next += length;
  return CAIRO_STATUS_SUCCESS;
}

TEST(CairoBitmapTest, ThePngHoldsTheSamePixels) {
  const auto bitmap = CairoBitmap::make(30, 20);
  CairoSurface surface(bitmap->pixels(), 1);
  surface.drawImage(evenImage(10, 10, 1, 0.4), {5, 5, 10, 10});
  const auto png = bitmap->png();
  ASSERT_TRUE(png);
  Reading reading{*png};
  const CairoSurfacePtr loaded(cairo_image_surface_create_from_png_stream(read, &reading));
  ASSERT_EQ(cairo_surface_status(loaded.get()), CAIRO_STATUS_SUCCESS);
  EXPECT_EQ(pictureOf(loaded.get()), pictureOf(bitmap->pixels()));
}

// Three captions drawn for real, and pixels beside and inside them.
TEST(CaptionsOnABitmapTest, PlatesFadeAndOnlySoftOnesSpill) {
  setenv("FONTCONFIG_FILE", VELLORA_TEST_FONTS, 1);
  for (const double scale : {1.0, 2.0}) {
    Log log;
    PangoPainter painter;
    FakeNativeView nativeView(log);
    FakeWorkspace workspace(log);
    nativeView.scale = scale;
    CaptionView view(painter, nativeView, workspace);
    view.setCaptions({{"The previous line gently fades away", {70, 120, 680, 44}, 24, 1},
                      {"The current translation stays clear", {70, 210, 680, 44}, 24, 0},
                      {"The next line blends into the background", {70, 300, 680, 44}, 24, 0.75}});
    const auto bitmap = CairoBitmap::make(static_cast<std::int64_t>(1200 * scale),
                                          static_cast<std::int64_t>(800 * scale));
    CairoSurface surface(bitmap->pixels(), scale);
    view.draw(surface);

    const auto alpha = [&](double x, double y) {
      return bitmap
          ->alpha(static_cast<std::int64_t>(x * scale), static_cast<std::int64_t>(y * scale))
          .value();
    };
    EXPECT_EQ(alpha(0, 0), 0);
    EXPECT_GE(alpha(700, 230), 0.2);
    EXPECT_LE(alpha(700, 230), 0.3);
    EXPECT_GE(alpha(700, 140), 0.1);
    EXPECT_LE(alpha(700, 140), 0.18);
    EXPECT_GT(alpha(700, 117), 0);
    EXPECT_EQ(alpha(700, 207), 0);
  }
}

}  // namespace
}  // namespace vellora
