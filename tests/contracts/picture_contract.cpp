#include <stdexcept>
#include <string>

#include "contracts/caption_painter_contract.h"
#include "support/caption_drawing.h"

namespace vellora {
namespace {

constexpr double oneLevel = 1.0 / 255;

Picture paint(PictureSubject& subject, const CaptionDrawing& drawing) {
  const auto image = subject.painter().paint(drawing);
  if (!image) throw std::runtime_error("nothing was painted");
  return subject.picture(*image);
}

Picture paintText(PictureSubject& subject, CaptionDrawing drawing) {
  drawing.plateColor = {0, 0, 0, 0};
  return paint(subject, drawing);
}

}  // namespace

TEST_P(PictureContract, ThePlateHasItsAlphaAndNothingIsOutside) {
  const Picture picture = paint(*subject, captionDrawing("", 200, 44, 24));
  EXPECT_EQ(picture.width(), 220);
  EXPECT_EQ(picture.height(), 64);
  EXPECT_NEAR(picture.alpha(110, 32), 0.26, oneLevel);
  EXPECT_EQ(picture.bounds(), (Box{10, 10, 209, 53}));
  // Straight edges are not blended with what is beside them.
  EXPECT_EQ(picture.alpha(10, 32), picture.alpha(110, 32));
  EXPECT_EQ(picture.alpha(110, 10), picture.alpha(110, 32));
}

TEST_P(PictureContract, ThePlatesCornersAreRound) {
  const Picture picture = paint(*subject, captionDrawing("", 200, 44, 24, 2));
  EXPECT_EQ(picture.width(), 440);
  EXPECT_EQ(picture.height(), 128);
  EXPECT_EQ(picture.alpha(20, 20), 0);
  EXPECT_EQ(picture.alpha(419, 107), 0);
  EXPECT_EQ(picture.alpha(20 + 14, 20), picture.alpha(200, 64));
  EXPECT_EQ(picture.alpha(20, 20 + 14), picture.alpha(200, 64));
  // The corner's arc meets its diagonal 7 × (1 − 1/√2) = 2.05 points from either side.
  EXPECT_EQ(picture.alpha(20 + 3, 20 + 3), 0);
  EXPECT_EQ(picture.alpha(20 + 5, 20 + 5), picture.alpha(200, 64));
}

TEST_P(PictureContract, ThePlateIsGrey) {
  const Picture picture = paint(*subject, captionDrawing("", 200, 44, 24));
  EXPECT_NEAR(picture.red(110, 32), picture.green(110, 32), oneLevel);
  EXPECT_NEAR(picture.green(110, 32), picture.blue(110, 32), oneLevel);
  // A calibrated level is lighter or darker in the bitmap's own space, but no other shade.
  EXPECT_NEAR(picture.red(110, 32), 0.32 * 0.26, 0.1 * 0.26);
}

TEST_P(PictureContract, TextStandsInItsRectangleUprightAndNotMirrored) {
  // A low line lies in the lower half of its line, quotation marks lie in the upper half.
  const Box low = paintText(*subject, captionDrawing("____", 200, 44, 24)).bounds(0.5);
  const Box high = paintText(*subject, captionDrawing("\"\"\"\"", 200, 44, 24)).bounds(0.5);
  ASSERT_GT(low.width(), 0);
  ASSERT_GT(high.width(), 0);
  EXPECT_GT(low.top, high.bottom);
  for (const Box& box : {low, high}) {
    EXPECT_GE(box.left, 19 - 1);
    EXPECT_GE(box.top, 14);
    EXPECT_LT(box.bottom, 14 + 36);
    EXPECT_LT(box.right, 110);  // begins at the left, and four characters do not fill the line
  }
  // The stem of an L is at its left, its foot at the bottom.
  const Picture picture = paintText(*subject, captionDrawing("L", 200, 44, 30, 2));
  const Box letter = picture.bounds(0.5);
  ASSERT_GT(letter.width(), 0);
  EXPECT_GT(picture.alpha(letter.left + 2, letter.top + 2), 0.5);
  EXPECT_EQ(picture.alpha(letter.right - 2, letter.top + 2), 0);
  EXPECT_GT(picture.alpha(letter.right - 2, letter.bottom - 2), 0.5);
}

TEST_P(PictureContract, TextHasItsColor) {
  const Picture picture = paintText(*subject, captionDrawing("████", 200, 44, 24));
  const Box box = picture.bounds(0.9);
  ASSERT_GT(box.width(), 0);
  const std::int64_t x = box.left + 4;  // within the first block
  const std::int64_t y = (box.top + box.bottom) / 2;
  EXPECT_NEAR(picture.alpha(x, y), 1, oneLevel);
  EXPECT_GT(picture.green(x, y), picture.blue(x, y));
  EXPECT_GT(picture.blue(x, y), picture.red(x, y));
}

TEST_P(PictureContract, TextThatOverflowsEndsWithAnEllipsis) {
  const Picture cut = paintText(*subject, captionDrawing(std::string(60, 'm'), 200, 44, 24));
  const Box box = cut.bounds(0.3);
  ASSERT_GT(box.width(), 0);
  EXPECT_LE(box.right, 19 + 182);
  // The last columns hold the ellipsis: ink only near the baseline, unlike an m's.
  const Box end = cut.bounds({box.right - 2, box.top, box.right, box.bottom}, 0.3);
  EXPECT_GT(end.top, (box.top + box.bottom) / 2);
}

TEST_P(PictureContract, EveryScriptIsPainted) {
  for (const char* text : {"歌詞の翻訳", "번역된 가사", "ترجمة", "מילים", "เนื้อเพลง", "💚"}) {
    EXPECT_GT(paintText(*subject, captionDrawing(text, 300, 44, 24)).bounds(0.5).width(), 0)
        << text;
  }
}

TEST_P(PictureContract, HeightIsThatOfTheLines) {
  const auto height = [&](const char* text, double width) {
    return subject->painter().measureHeight(text, 20, width, 1000);
  };
  EXPECT_NEAR(height("one\ntwo", 400), 2 * height("one", 400), 1);
  EXPECT_NEAR(height("wwwwww wwwwww", 150), 2 * height("one", 400), 1);
}

TEST_P(PictureContract, ABlurredPictureSpillsIntoTheMarginAndTheSharpOneStays) {
  const auto sharp = subject->painter().paint(captionDrawing("text", 200, 44, 24));
  ASSERT_TRUE(sharp);
  const Picture before = subject->picture(*sharp);
  EXPECT_EQ(before.alpha(110, 7), 0);
  const auto blurred = subject->painter().blur(*sharp, 2.6);
  ASSERT_TRUE(blurred);
  const Picture after = subject->picture(*blurred);
  EXPECT_EQ(after.width(), 220);
  EXPECT_EQ(after.height(), 64);
  EXPECT_GT(after.alpha(110, 7), 0);
  EXPECT_LT(after.alpha(110, 10), 0.26);
  EXPECT_EQ(subject->picture(*sharp), before);
}

TEST_P(PictureContract, TheBlursRadiusIsTheGaussiansDeviationInPixels) {
  // Across a straight edge a Gaussian's alpha is half at the edge, and 0.841 of the whole one
  // deviation inside it.
  const auto sharp = subject->painter().paint(captionDrawing("", 200, 60, 24));
  ASSERT_TRUE(sharp);
  const Picture after = subject->picture(*subject->painter().blur(*sharp, 4));
  const double atEdge = (after.alpha(110, 9) + after.alpha(110, 10)) / 2;
  const double inside = (after.alpha(110, 13) + after.alpha(110, 14)) / 2;
  EXPECT_NEAR(atEdge / 0.26, 0.5, 0.06);
  EXPECT_NEAR(inside / 0.26, 0.841, 0.06);
}

TEST_P(PictureContract, ABlurLeavesThePictureUpright) {
  const CaptionDrawing drawing = captionDrawing("____", 200, 44, 24);
  const Box low = paintText(*subject, drawing).bounds(0.5);
  const std::int64_t middle = (low.left + low.right) / 2;
  const auto sharp = subject->painter().paint(drawing);
  ASSERT_TRUE(sharp);
  const Picture after = subject->picture(*subject->painter().blur(*sharp, 1));
  // Above the plate's middle there is no text.
  EXPECT_GT(after.alpha(middle, low.top), after.alpha(middle, 63 - low.top) + 0.1);
}

}  // namespace vellora
