#include <algorithm>
#include <memory>
#include <stdexcept>
#include <string>

#import <AppKit/AppKit.h>
#include <gtest/gtest.h>

#import "picture.h"
#import "platform/macos/drawing.h"

namespace vellora {
namespace {

constexpr Color plateColor{0.32, 0.32, 0.32, 0.26};
constexpr Color textColor{0.82, 1.0, 0.92, 1.0};
constexpr Color nothing{0, 0, 0, 0};
constexpr double oneLevel = 1.0 / 255;

class PainterTest : public ::testing::Test {
 protected:
  // A caption with a plate of that size, ten points from each side, at `scale`.
  static CaptionDrawing caption(const std::string& text, double width, double height, double font,
                                double scale = 1) {
    CaptionDrawing drawing;
    drawing.text = text;
    drawing.size = {width + 20, height + 20};
    drawing.pixelWidth = static_cast<std::int64_t>(drawing.size.width * scale);
    drawing.pixelHeight = static_cast<std::int64_t>(drawing.size.height * scale);
    drawing.scale = scale;
    drawing.plate = {10, 10, width, height};
    drawing.cornerRadius = 7;
    drawing.plateColor = plateColor;
    drawing.textRect = {19, 14, width - 18, height - 8};
    drawing.fontSize = font;
    drawing.textColor = textColor;
    return drawing;
  }

  Picture paint(const CaptionDrawing& drawing) {
    const std::shared_ptr<const CaptionImage> image = painter->paint(drawing);
    if (!image) throw std::runtime_error("nothing was painted");
    return Picture(image);
  }
  Picture paintText(CaptionDrawing drawing) {
    drawing.plateColor = nothing;
    return paint(drawing);
  }

  const std::unique_ptr<CaptionPainter> painter = makeAppKitPainter();
};

TEST_F(PainterTest, ThePlateHasItsAlphaAndNothingIsOutside) {
  const Picture picture = paint(caption("", 200, 44, 24));
  EXPECT_EQ(picture.width(), 220);
  EXPECT_EQ(picture.height(), 64);
  EXPECT_NEAR(picture.alpha(110, 32), 0.26, oneLevel);
  EXPECT_EQ(picture.bounds(), (Box{10, 10, 209, 53}));
  // Straight edges are not blended with what is beside them.
  EXPECT_EQ(picture.alpha(10, 32), picture.alpha(110, 32));
  EXPECT_EQ(picture.alpha(110, 10), picture.alpha(110, 32));
}

TEST_F(PainterTest, ThePlatesCornersAreRound) {
  const Picture picture = paint(caption("", 200, 44, 24, 2));
  EXPECT_EQ(picture.alpha(20, 20), 0);
  EXPECT_EQ(picture.alpha(419, 107), 0);
  EXPECT_EQ(picture.alpha(20 + 14, 20), picture.alpha(200, 64));
  EXPECT_EQ(picture.alpha(20, 20 + 14), picture.alpha(200, 64));
  // The corner's arc meets its diagonal 7 × (1 − 1/√2) = 2.05 points from either side.
  EXPECT_EQ(picture.alpha(20 + 3, 20 + 3), 0);
  EXPECT_EQ(picture.alpha(20 + 5, 20 + 5), picture.alpha(200, 64));
}

TEST_F(PainterTest, ThePlateIsGrey) {
  const Color plate = paint(caption("", 200, 44, 24)).color(110, 32);
  EXPECT_NEAR(plate.red, plate.green, 0.02);
  EXPECT_NEAR(plate.green, plate.blue, 0.02);
  // The calibrated level 0.32 is lighter or darker in the bitmap's own space, but no other shade.
  EXPECT_NEAR(plate.red, 0.32, 0.1);
}

TEST_F(PainterTest, ABitmapAtScaleTwoHasTwiceThePixelsAndTheSamePoints) {
  const auto image = painter->paint(caption("", 200, 30, 24, 2));
  ASSERT_TRUE(image);
  const Picture picture(image);
  EXPECT_EQ(picture.width(), 440);
  EXPECT_EQ(picture.height(), 100);
  const NSSize size = static_cast<const AppKitImage&>(*image).image().size;
  EXPECT_EQ(size.width, 220);
  EXPECT_EQ(size.height, 50);
}

TEST_F(PainterTest, TextStandsInItsRectangleAndUpright) {
  // A low line lies in the lower half of its line, quotation marks lie in the upper half.
  const Box low = paintText(caption("____", 200, 44, 24)).bounds(0.5);
  const Box high = paintText(caption("\"\"\"\"", 200, 44, 24)).bounds(0.5);
  ASSERT_GE(low.top, 0);
  ASSERT_GE(high.top, 0);
  EXPECT_GT(low.top, high.bottom);
  for (const Box& box : {low, high}) {
    EXPECT_GE(box.left, 19 - 1);
    EXPECT_GE(box.top, 14);
    EXPECT_LT(box.bottom, 14 + 36);
    EXPECT_LT(box.right, 110);  // begins at the left, and four characters do not fill the line
  }
}

TEST_F(PainterTest, TextIsNotMirrored) {
  // The stem of an L is at its left, its foot at the bottom.
  const Picture picture = paintText(caption("L", 200, 44, 30, 2));
  const Box box = picture.bounds(0.5);
  ASSERT_GE(box.top, 0);
  const std::int64_t stem = box.left + 2;
  EXPECT_GT(picture.alpha(stem, box.top + 2), 0.5);
  EXPECT_EQ(picture.alpha(box.right - 2, box.top + 2), 0);
  EXPECT_GT(picture.alpha(box.right - 2, box.bottom - 2), 0.5);
}

TEST_F(PainterTest, TextHasItsColor) {
  const Picture picture = paintText(caption("████", 200, 44, 30));
  const Box box = picture.bounds(0.9);
  ASSERT_GE(box.top, 0);
  const Color color = picture.color((box.left + box.right) / 2, (box.top + box.bottom) / 2);
  EXPECT_NEAR(color.alpha, 1, oneLevel);
  EXPECT_GT(color.green, color.blue);
  EXPECT_GT(color.blue, color.red);
}

TEST_F(PainterTest, TextThatOverflowsEndsWithAnEllipsis) {
  const std::string line(60, 'm');
  const Picture cut = paintText(caption(line, 200, 44, 24));
  const Box box = cut.bounds(0.3);
  ASSERT_GE(box.top, 0);
  EXPECT_LE(box.right, 19 + 182);
  // The last columns hold the ellipsis: ink only near the baseline, unlike an m's.
  std::int64_t top = box.bottom;
  for (std::int64_t column = box.right - 2; column <= box.right; ++column) {
    for (std::int64_t row = box.bottom; row >= box.top; --row) {
      if (cut.alpha(column, row) > 0.3) top = std::min(top, row);
    }
  }
  EXPECT_GT(top, (box.top + box.bottom) / 2);
}

TEST_F(PainterTest, EveryScriptIsPaintedWithoutBoxes) {
  for (const char* text : {"歌詞の翻訳", "번역된 가사", "ترجمة", "מילים", "เนื้อเพลง", "💚"}) {
    EXPECT_GE(paintText(caption(text, 300, 44, 24)).bounds(0.5).top, 0) << text;
  }
}

TEST_F(PainterTest, ADrawingOfImpossibleSizeIsRefused) {
  CaptionDrawing drawing = caption("text", 200, 44, 24);
  drawing.pixelWidth = 0;
  drawing.pixelHeight = 0;
  EXPECT_FALSE(painter->paint(drawing));
}

TEST_F(PainterTest, HeightGrowsByTheLineAndStaysBelowItsBound) {
  const double one = painter->measureHeight("one", 20, 400, 1000);
  EXPECT_GT(one, 20);
  EXPECT_LT(one, 30);
  EXPECT_NEAR(painter->measureHeight("one\ntwo", 20, 400, 1000), 2 * one, 1);
  EXPECT_NEAR(painter->measureHeight("wwwwww wwwwww", 20, 150, 1000), 2 * one, 1);
  EXPECT_LE(painter->measureHeight("one\ntwo\nthree\nfour", 20, 400, 60), 60);
}

TEST_F(PainterTest, ABlurredPictureSpillsIntoTheMarginAndTheSharpOneStays) {
  const auto sharp = painter->paint(caption("text", 200, 44, 24));
  ASSERT_TRUE(sharp);
  EXPECT_EQ(Picture(sharp).alpha(110, 7), 0);
  const auto blurred = painter->blur(*sharp, 2.6);
  ASSERT_TRUE(blurred);
  const Picture after(blurred);
  EXPECT_EQ(after.width(), 220);
  EXPECT_EQ(after.height(), 64);
  EXPECT_GT(after.alpha(110, 7), 0);
  EXPECT_LT(after.alpha(110, 10), 0.26);
  EXPECT_EQ(Picture(sharp).alpha(110, 7), 0);
  const NSSize size = static_cast<const AppKitImage&>(*blurred).image().size;
  EXPECT_EQ(size.width, 220);
  EXPECT_EQ(size.height, 64);
}

TEST_F(PainterTest, TheBlursRadiusIsTheGaussiansDeviationInPixels) {
  // Across a straight edge a Gaussian's alpha is half at the edge, and 0.841 of the whole one
  // deviation inside it.
  const auto sharp = painter->paint(caption("", 200, 60, 24));
  ASSERT_TRUE(sharp);
  const Picture after(painter->blur(*sharp, 4));
  const double whole = 0.26;
  const double atEdge = (after.alpha(110, 9) + after.alpha(110, 10)) / 2;
  const double inside = (after.alpha(110, 13) + after.alpha(110, 14)) / 2;
  EXPECT_NEAR(atEdge / whole, 0.5, 0.06);
  EXPECT_NEAR(inside / whole, 0.841, 0.06);
}

TEST_F(PainterTest, ABlurLeavesThePictureUpright) {
  const auto sharp = painter->paint(caption("____", 200, 44, 24));
  ASSERT_TRUE(sharp);
  const Picture before(sharp);
  const Picture after(painter->blur(*sharp, 1));
  // Above the plate's middle there is no text, before as after.
  const Box low = paintText(caption("____", 200, 44, 24)).bounds(0.5);
  const std::int64_t middle = (low.left + low.right) / 2;
  EXPECT_GT(after.alpha(middle, low.top), after.alpha(middle, 63 - low.top) + 0.1);
  EXPECT_GT(before.alpha(middle, low.top), before.alpha(middle, 63 - low.top) + 0.1);
}

}  // namespace
}  // namespace vellora
