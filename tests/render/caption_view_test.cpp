#include "render/caption_view.h"

#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/fake_native_view.h"
#include "support/fake_painter.h"
#include "support/fake_workspace.h"

namespace vellora {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

class CaptionViewTest : public ::testing::Test {
 protected:
  // Puts the captions up, draws them as the platform would, and forgets the log of setting them.
  void draw(std::vector<Caption> captions) {
    view.setCaptions(std::move(captions));
    log.clear();
    surface.destinations.clear();
    nativeView.drawFunction(surface);
  }

  Log log;
  FakePainter painter{log};
  FakeNativeView nativeView{log};
  FakeWorkspace workspace{log};
  CaptionView view{painter, nativeView, workspace};
  FakeSurface surface{log};
};

Caption captionAt(double x, double y, double softness = 0) {
  return {"text", {x, y, 200, 30}, 20, softness};
}

TEST_F(CaptionViewTest, EveryAssignmentAsksForADrawingEvenOfEqualCaptions) {
  view.setCaptions({captionAt(0, 0)});
  EXPECT_THAT(log, ElementsAre("needs display"));
  view.setCaptions({captionAt(0, 0)});
  EXPECT_THAT(log, ElementsAre("needs display", "needs display"));
}

TEST_F(CaptionViewTest, NoCaptionsDrawNothing) {
  draw({});
  EXPECT_THAT(log, IsEmpty());
}

TEST_F(CaptionViewTest, CaptionsAtDifferentPlacesShareOnePicture) {
  draw({captionAt(10, 20), captionAt(300, 400)});
  EXPECT_THAT(log, ElementsAre("paint text", "draw sharp 1", "draw sharp 1"));
  EXPECT_EQ(view.cachedImageCount(), 1U);
  EXPECT_THAT(surface.destinations, ElementsAre(Rect{0, 10, 220, 50}, Rect{290, 390, 220, 50}));
}

TEST_F(CaptionViewTest, PicturesAreKeptFromOneDrawingToTheNext) {
  draw({captionAt(10, 20)});
  draw({captionAt(10, 15)});
  EXPECT_THAT(log, ElementsAre("draw sharp 1"));
}

TEST_F(CaptionViewTest, CaptionsAreDrawnInTheirOrder) {
  draw({{"a", {0, 0, 100, 20}, 20, 0}, {"b", {0, 10, 100, 20}, 20, 0}});
  EXPECT_THAT(log, ElementsAre("paint a", "draw sharp 1", "paint b", "draw sharp 2"));
}

TEST_F(CaptionViewTest, EachPartOfTheKeyMakesAnotherPicture) {
  const Caption first{"a", {0, 0, 100, 20}, 20, 0};
  Caption otherText = first;
  otherText.text = "b";
  Caption wider = first;
  wider.rect.width = 101;
  Caption taller = first;
  taller.rect.height = 21;
  Caption larger = first;
  larger.font = 21;
  Caption softer = first;
  softer.softness = 0.125;
  draw({first, otherText, wider, taller, larger, softer});
  EXPECT_EQ(view.cachedImageCount(), 6U);
  nativeView.scale = 3.0;
  draw({first});
  EXPECT_EQ(view.cachedImageCount(), 7U);
}

TEST_F(CaptionViewTest, CanonicallyEqualTextsAndZerosOfEitherSignShareOnePicture) {
  draw({{"caf\u00E9", {0, 0, 100, 20}, 20, 0.0}, {"cafe\u0301", {0, 0, 100, 20}, 20, -0.0}});
  EXPECT_EQ(view.cachedImageCount(), 1U);
  EXPECT_EQ(painter.drawings.size(), 1U);
}

TEST_F(CaptionViewTest, NegativeSizesCountAsPositiveOnes) {
  draw({{"a", {0, 0, 100, 20}, 20, 0}, {"a", {100, 20, -100, -20}, 20, 0}});
  EXPECT_THAT(log, ElementsAre("paint a", "draw sharp 1", "draw sharp 1"));
  EXPECT_THAT(surface.destinations, ElementsAre(Rect{-10, -10, 120, 40}, Rect{-10, -10, 120, 40}));
}

TEST_F(CaptionViewTest, SharpCaptionsAreNotBlurred) {
  draw({captionAt(0, 0, 0)});
  EXPECT_THAT(log, ElementsAre("paint text", "draw sharp 1"));
  EXPECT_THAT(painter.radii, IsEmpty());
}

TEST_F(CaptionViewTest, SoftnessThatIsNotANumberIsNotBlurred) {
  draw({captionAt(0, 0, notANumber)});
  EXPECT_THAT(painter.radii, IsEmpty());
}

TEST_F(CaptionViewTest, TheBlurGrowsWithSoftnessAndScale) {
  struct Case {
    double scale, softness, radius;
  };
  for (const Case& c : {Case{1, 0.125, 0.325}, Case{2, 0.125, 0.65}, Case{1, 0.5, 1.3},
                        Case{1, 1, 2.6}, Case{2, 1, 5.2}}) {
    painter.radii.clear();
    nativeView.scale = c.scale;
    draw({captionAt(0, 0, c.softness)});
    ASSERT_EQ(painter.radii.size(), 1U);
    EXPECT_DOUBLE_EQ(painter.radii[0], c.radius);
  }
}

TEST_F(CaptionViewTest, SoftCaptionsAreDrawnBlurred) {
  draw({captionAt(0, 0, 0.125)});
  EXPECT_THAT(log, ElementsAre("paint text", "blur sharp 1", "draw blur of sharp 1"));
}

TEST_F(CaptionViewTest, AtScaleTwoTheBitmapHasTwicePixelsAndTheMarginIsTenPoints) {
  nativeView.scale = 2.0;
  draw({captionAt(50, 60)});
  ASSERT_EQ(painter.drawings.size(), 1U);
  EXPECT_EQ(painter.drawings[0].pixelWidth, 440);
  EXPECT_EQ(painter.drawings[0].pixelHeight, 100);
  EXPECT_THAT(surface.destinations, ElementsAre(Rect{40, 50, 220, 50}));
}

TEST_F(CaptionViewTest, PixelSizesAreCutTowardZero) {
  nativeView.scale = 1.5;
  draw({{"a", {0, 0, 200.5, 30.9}, 20, 0}});
  EXPECT_EQ(painter.drawings[0].pixelWidth, 330);  // 220.5 × 1.5 = 330.75
  EXPECT_EQ(painter.drawings[0].pixelHeight, 76);  // 50.9 × 1.5 = 76.35
}

TEST_F(CaptionViewTest, ThePlateStandsInTheMarginAndTheTextInThePlate) {
  nativeView.scale = 2.0;
  draw({{"words", {5, 6, 200, 30}, 19.5, 0}});
  const CaptionDrawing& drawing = painter.drawings.at(0);
  EXPECT_EQ(drawing.text, "words");
  EXPECT_EQ(drawing.size, (Size{220, 50}));
  EXPECT_EQ(drawing.scale, 2);
  EXPECT_EQ(drawing.plate, (Rect{10, 10, 200, 30}));
  EXPECT_EQ(drawing.cornerRadius, 7);
  EXPECT_EQ(drawing.textRect, (Rect{19, 14, 182, 22}));
  EXPECT_EQ(drawing.fontSize, 19.5);
}

TEST_F(CaptionViewTest, PlateAndTextFadeWithSoftness) {
  struct Case {
    double softness, plateAlpha, textAlpha;
  };
  for (const Case& c :
       {Case{0, 0.26, 1}, Case{0.125, 0.245, 0.95}, Case{0.5, 0.20, 0.80}, Case{1, 0.14, 0.60}}) {
    draw({captionAt(0, 0, c.softness)});
    const CaptionDrawing& drawing = painter.drawings.back();
    EXPECT_EQ(drawing.plateColor.red, 0.32);
    EXPECT_EQ(drawing.plateColor.green, 0.32);
    EXPECT_EQ(drawing.plateColor.blue, 0.32);
    EXPECT_DOUBLE_EQ(drawing.plateColor.alpha, c.plateAlpha);
    EXPECT_EQ(drawing.textColor.red, 0.82);
    EXPECT_EQ(drawing.textColor.green, 1.0);
    EXPECT_EQ(drawing.textColor.blue, 0.92);
    EXPECT_DOUBLE_EQ(drawing.textColor.alpha, c.textAlpha);
  }
}

TEST_F(CaptionViewTest, TheWindowsScaleComesFirstThenTheMainScreensThenTwo) {
  nativeView.scale = 3.0;
  workspace.mainScale = 1.5;
  draw({captionAt(0, 0)});
  EXPECT_EQ(painter.drawings.back().scale, 3);
  nativeView.scale.reset();
  draw({captionAt(0, 0)});
  EXPECT_EQ(painter.drawings.back().scale, 1.5);
  workspace.mainScale.reset();
  draw({captionAt(0, 0)});
  EXPECT_EQ(painter.drawings.back().scale, 2);
}

TEST_F(CaptionViewTest, TheNinetySeventhPictureEmptiesTheCacheFirst) {
  std::vector<Caption> captions;
  for (int i = 0; i < 96; ++i) captions.push_back({"text", {0, 0, 100.0 + i, 20}, 20, 0});
  draw(captions);
  EXPECT_EQ(view.cachedImageCount(), 96U);
  draw({{"one more", {0, 0, 100, 20}, 20, 0}});
  EXPECT_EQ(view.cachedImageCount(), 1U);
  draw({{"one more", {0, 0, 100, 20}, 20, 0}});
  EXPECT_THAT(log, ElementsAre("draw sharp 97"));
}

// Of 220 x 50 pixels each, at scale 1.
TEST_F(CaptionViewTest, BeyondItsBytesThePicturesThatWereShownLongestAgoAreForgotten) {
  constexpr std::size_t one = 220 * 50 * 4;
  FakeNativeView native(log);
  native.scale = 1;
  CaptionView small(painter, native, workspace, 3 * one);
  const auto show = [&](std::vector<Caption> captions) {
    small.setCaptions(std::move(captions));
    log.clear();
    native.drawFunction(surface);
  };
  const auto named = [](const char* text) { return Caption{text, {0, 0, 200, 30}, 20, 0}; };
  show({named("a")});
  show({named("b")});
  show({named("c")});
  show({named("a")});
  EXPECT_EQ(small.cachedBytes(), 3 * one);
  show({named("d")});  // b was shown longest ago
  EXPECT_EQ(small.cachedImageCount(), 3U);
  EXPECT_EQ(small.cachedBytes(), 3 * one);
  show({named("a"), named("c"), named("d")});
  EXPECT_THAT(log, ElementsAre("draw sharp 1", "draw sharp 3", "draw sharp 4"));
  show({named("b")});
  EXPECT_THAT(log, ElementsAre("paint b", "draw sharp 5"));
  small.forgetImages();
  EXPECT_EQ(small.cachedBytes(), 0U);
}

TEST_F(CaptionViewTest, WhatIsShownIsKeptHoweverManyBytesItHas) {
  FakeNativeView native(log);
  CaptionView tiny(painter, native, workspace, 1);
  const std::vector<Caption> captions{captionAt(0, 0), captionAt(0, 40, 0.5), captionAt(0, 80, 1)};
  for (int drawing = 0; drawing < 3; ++drawing) {
    tiny.setCaptions(captions);
    native.drawFunction(surface);
  }
  EXPECT_EQ(painter.drawings.size(), 3U);
  EXPECT_EQ(tiny.cachedImageCount(), 3U);
}

TEST_F(CaptionViewTest, AFullCacheStillAnswers) {
  std::vector<Caption> captions;
  for (int i = 0; i < 96; ++i) captions.push_back({"text", {0, 0, 100.0 + i, 20}, 20, 0});
  draw(captions);
  draw(captions);
  EXPECT_EQ(painter.drawings.size(), 96U);
  EXPECT_EQ(view.cachedImageCount(), 96U);
}

TEST_F(CaptionViewTest, ACaptionThatCannotBePaintedIsLeftOutAndTriedAgain) {
  painter.paintingFails = true;
  draw({captionAt(0, 0, 1)});
  EXPECT_THAT(log, ElementsAre("paint text"));
  EXPECT_EQ(view.cachedImageCount(), 0U);
  painter.paintingFails = false;
  draw({captionAt(0, 0, 1)});
  EXPECT_THAT(log, ElementsAre("paint text", "blur sharp 2", "draw blur of sharp 2"));
}

TEST_F(CaptionViewTest, ACaptionThatCannotBePaintedDoesNotKeepTheOthersAway) {
  painter.unpaintableText = "b";
  draw({{"a", {0, 0, 100, 20}, 20, 0},
        {"b", {0, 30, 100, 20}, 20, 0},
        {"c", {0, 60, 100, 20}, 20, 0}});
  EXPECT_THAT(log, ElementsAre("paint a", "draw sharp 1", "paint b", "paint c", "draw sharp 3"));
}

TEST_F(CaptionViewTest, AFailedPaintingAtTheLimitKeepsTheOtherPictures) {
  std::vector<Caption> captions;
  for (int i = 0; i < 96; ++i) captions.push_back({"text", {0, 0, 100.0 + i, 20}, 20, 0});
  draw(captions);
  painter.paintingFails = true;
  draw({{"one more", {0, 0, 100, 20}, 20, 0}});
  EXPECT_EQ(view.cachedImageCount(), 96U);
}

TEST_F(CaptionViewTest, WhereTheBlurFailsTheSharpPictureIsDrawnAndKept) {
  painter.blurringFails = true;
  draw({captionAt(0, 0, 1)});
  EXPECT_THAT(log, ElementsAre("paint text", "blur sharp 1", "draw sharp 1"));
  draw({captionAt(0, 0, 1)});
  EXPECT_THAT(log, ElementsAre("draw sharp 1"));
}

TEST_F(CaptionViewTest, FrameAndBoundsAreTheNativeViews) {
  view.setFrame({0, 0, 1200, 800});
  EXPECT_EQ(nativeView.lastFrame, (Rect{0, 0, 1200, 800}));
  EXPECT_EQ(view.bounds(), (Rect{0, 0, 1200, 800}));
}

TEST_F(CaptionViewTest, ANativeViewThatOutlivesTheViewIsLeftWithoutADrawFunction) {
  {
    CaptionView shortLived(painter, nativeView, workspace);
    EXPECT_TRUE(nativeView.drawFunction);
  }
  EXPECT_FALSE(nativeView.drawFunction);
}

using CaptionViewDeathTest = CaptionViewTest;

TEST_F(CaptionViewDeathTest, APictureSizeThatIsNoNumberEndsTheProcess) {
  nativeView.scale = 1.0;
  EXPECT_DEATH(draw({{"a", {0, 0, notANumber, 20}, 20, 0}}), "not finite or out of range");
  EXPECT_DEATH(draw({{"a", {0, 0, 100, std::numeric_limits<double>::infinity()}, 20, 0}}),
               "not finite or out of range");
  EXPECT_DEATH(draw({{"a", {0, 0, 9223372036854775808.0, 20}, 20, 0}}),
               "not finite or out of range");
}

}  // namespace
}  // namespace vellora
