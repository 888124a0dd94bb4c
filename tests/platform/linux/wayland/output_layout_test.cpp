#include "platform/linux/wayland/session/output_layout.h"

#include <cmath>
#include <limits>

#include <gtest/gtest.h>

namespace vellora {
namespace {

const OutputLayout twoSideBySide{{{7, "left", {0, 0, 1280, 800}, {1280, 800}, 1},
                                  {9, "right", {1280, 100, 960, 540}, {1920, 1080}, 2}}};

TEST(OutputLayoutTest, ThePrimaryOutputIsTheOneAtTheOriginElseTheFirst) {
  EXPECT_EQ(twoSideBySide.primary()->id, 7u);
  OutputLayout turned = twoSideBySide;
  std::swap(turned.outputs[0], turned.outputs[1]);
  EXPECT_EQ(turned.primary()->id, 7u);
  turned.outputs[1].place.x = -1280;
  EXPECT_EQ(turned.primary()->id, 9u);
  EXPECT_EQ(turned.primaryHeight(), 540);
  EXPECT_EQ(turned.primaryScale(), 2);
  EXPECT_EQ(OutputLayout{}.primary(), nullptr);
  EXPECT_EQ(OutputLayout{}.primaryHeight(), std::nullopt);
  EXPECT_EQ(OutputLayout{}.primaryScale(), std::nullopt);
}

TEST(OutputLayoutTest, WindowCoordinatesBeginAtThePrimaryOutputsBottomLeft) {
  EXPECT_EQ(twoSideBySide.layoutRect({100, 450, 400, 300}), (Rect{100, 50, 400, 300}));
  EXPECT_EQ(twoSideBySide.layoutRect({1300, 700, 10, 200}), (Rect{1300, -100, 10, 200}));
}

TEST(OutputLayoutTest, ARectangleIsOnTheOutputThatHasMostOfIt) {
  const auto under = [](const Rect& rect, std::uint32_t present = 0) {
    const Output* const output = twoSideBySide.under(rect, present);
    return output == nullptr ? 0 : output->id;
  };
  EXPECT_EQ(under({100, 100, 200, 200}), 7u);
  EXPECT_EQ(under({1300, 200, 200, 200}), 9u);
  EXPECT_EQ(under({1180, 200, 199, 200}), 7u);
  EXPECT_EQ(under({1180, 200, 201, 200}), 9u);
  // Of two halves, the one where it is already.
  EXPECT_EQ(under({1180, 200, 200, 200}), 7u);
  EXPECT_EQ(under({1180, 200, 200, 200}, 9), 9u);
  // The right output ends above; what is below is nowhere.
  EXPECT_EQ(under({1250, 640, 300, 100}), 7u);
  EXPECT_EQ(under({1300, 700, 200, 200}), 0u);
  EXPECT_EQ(under({3000, 0, 200, 200}), 0u);
  EXPECT_EQ(under({100, 100, 0, 0}), 0u);
  const double nan = std::nan("");
  EXPECT_EQ(under({nan, nan, nan, nan}), 0u);
}

TEST(OutputScaleTest, IsTheSimplestRatioThatGivesThePointsCutOrRounded) {
  EXPECT_EQ(outputScale({1280, 800}, {1280, 800}), 1);
  EXPECT_EQ(outputScale({1280, 800}, {640, 400}), 2);
  EXPECT_EQ(outputScale({1280, 800}, {853, 533}), 1.5);  // cut, as wlroots does
  EXPECT_EQ(outputScale({1920, 1080}, {1280, 720}), 1.5);
  EXPECT_EQ(outputScale({2560, 1440}, {2048, 1152}), 1.25);
  EXPECT_EQ(outputScale({1366, 768}, {1093, 614}), 1.25);
  EXPECT_EQ(outputScale({1080, 1920}, {617, 1097}), 1.75);  // turned; rounded, as KWin does
  EXPECT_EQ(outputScale({3840, 2160}, {2194, 1234}), 1.75);
  EXPECT_NEAR(outputScale({1920, 1080}, {1443, 812}), 1.33, 1e-12);
  EXPECT_NEAR(outputScale({1920, 1080}, {1745, 981}), 1.1, 1e-12);
  EXPECT_NEAR(outputScale({1920, 1080}, {3840, 2160}), 0.5, 1e-12);
}

TEST(OutputScaleTest, WhatTheCompositorPrefersCountsWhereItFits) {
  EXPECT_EQ(outputScale({1280, 800}, {853, 533}, 181.0 / 120), 1.5);
  EXPECT_EQ(outputScale({1920, 1080}, {1443, 812}, 1.3305), 1.3305);
  EXPECT_EQ(outputScale({1280, 800}, {1280, 800}, 2), 1);
  EXPECT_EQ(outputScale({1280, 800}, {1280, 800}, 0), 1);
}

TEST(OutputScaleTest, AnOutputWithoutSizeHasOnePixelAPoint) {
  EXPECT_EQ(outputScale({0, 0}, {0, 0}), 1);
  EXPECT_EQ(outputScale({1280, 800}, {0, 800}), 1);
}

}  // namespace
}  // namespace vellora
