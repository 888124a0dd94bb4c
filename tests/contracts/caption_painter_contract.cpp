#include "contracts/caption_painter_contract.h"

#include <string>
#include <string_view>
#include <vector>

#include "support/caption_drawing.h"

namespace vellora {

TEST_P(CaptionPainterContract, HeightGrowsWithTheTextUpToItsBound) {
  CaptionPainter& painter = subject->painter();
  std::string song;
  for (int i = 0; i < 600; ++i) song += "words ";
  const double line = painter.measureHeight("words", 20, 400, 1000);
  EXPECT_GE(line, 20);
  EXPECT_LT(line, 30);
  EXPECT_GT(painter.measureHeight(song, 20, 400, 1e6), line);
  EXPECT_LE(painter.measureHeight(song, 20, 400, 1.5 * line), 1.5 * line);
  EXPECT_EQ(painter.measureHeight("words", 20, 400, 1000), line);
}

TEST_P(CaptionPainterContract, TheSameTranslationAgainChangesNoTextAndEachIsPainted) {
  CaptionPainter& painter = subject->painter();
  for (const auto& texts : {std::vector<std::string_view>{"夜空に消える", "骨直遊"},
                            std::vector<std::string_view>{"在月光下，我的朋友，", "骨直遊"},
                            std::vector<std::string_view>{}}) {
    painter.setTranslation(texts);
    const double height = painter.measureHeight("骨直遊", 20, 400, 1000);
    EXPECT_FALSE(painter.setTranslation(texts));
    EXPECT_GE(height, 20);
    EXPECT_EQ(painter.measureHeight("骨直遊", 20, 400, 1000), height);
    EXPECT_TRUE(painter.paint(captionDrawing("骨直遊", 200, 44, 24)));
  }
}

TEST_P(CaptionPainterContract, ABlurIsAnotherPictureThanTheSharpOne) {
  const auto sharp = subject->painter().paint(captionDrawing("text", 200, 44, 24));
  ASSERT_TRUE(sharp);
  const auto blurred = subject->painter().blur(*sharp, 2.6);
  EXPECT_TRUE(blurred);
  EXPECT_NE(blurred, sharp);
}

TEST_P(CaptionPainterContract, AnImpossibleSizeIsRefused) {
  CaptionDrawing drawing = captionDrawing("text", 200, 44, 24);
  drawing.pixelWidth = 0;
  EXPECT_FALSE(subject->painter().paint(drawing));
  drawing.pixelHeight = 0;
  EXPECT_FALSE(subject->painter().paint(drawing));
}

}  // namespace vellora
