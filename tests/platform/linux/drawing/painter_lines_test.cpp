#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "painter_fixture.h"

namespace vellora {
namespace {

TEST_F(PainterTest, OverflowEndsWithAnEllipsis) {
  const double font = 24;
  std::string text;
  for (int i = 0; i < 60; ++i) text += "lll ";
  for (const double lineCount : {1.0, 2.0}) {
    const double height = std::ceil(font * 1.25 * lineCount) + 8;
    const Picture picture = paintText(captionDrawing(text, 300, height, font));
    const Box ink = picture.bounds();
    EXPECT_LE(ink.bottom, 10 + height);
    // The end of the last line is dots on the ground, not tall strokes.
    const std::int64_t lastLine = 14 + static_cast<std::int64_t>(font * 1.25 * (lineCount - 1));
    const Box end = picture.bounds({ink.right - 12, lastLine, ink.right, picture.height() - 1});
    EXPECT_GT(end.width(), 6);
    EXPECT_LT(end.height(), font / 4);
  }
}

TEST_F(PainterTest, OverflowOfTextFromTheRightEndsAtTheLeft) {
  std::string text;
  for (int i = 0; i < 60; ++i) text += "ווו ";
  const Picture picture = paintText(captionDrawing(text, 300, 38, 24));
  const Box ink = picture.bounds();
  const Box end = picture.bounds({ink.left, 0, ink.left + 12, picture.height() - 1});
  EXPECT_GT(end.width(), 6);
  EXPECT_LT(end.height(), 6);
}

TEST_F(PainterTest, LinesThatFindNoRoomFollowOnTheLastOneThatDoes) {
  for (const char* text : {"one\ntwo", "one\r\ntwo", "one\u2028two", "one\u2029two"}) {
    const Box low = paintText(captionDrawing(text, 300, 38, 24)).bounds();
    const Box high = paintText(captionDrawing(text, 300, 68, 24)).bounds();
    EXPECT_GT(low.width(), high.width() * 3 / 2) << text;
    EXPECT_GT(high.height(), low.height() * 3 / 2) << text;
  }
  // At the side where their script begins.
  EXPECT_GT(paintText(captionDrawing("לילה\nיום", 300, 38, 24)).bounds().right, 301 - 5);
  EXPECT_LT(paintText(captionDrawing("one\ntwo", 300, 38, 24)).bounds().left, 19 + 5);
}

TEST_F(PainterTest, ACutLineKeepsItsParagraphsDirection) {
  // From the right to the left, though the line that is cut begins with a word from the left: it
  // finds no room on the first one.
  const Picture picture = paintText(
      captionDrawing("שלוםשלוםשלוםשלום mmmmmmmm ווו ווו ווו ווו ווו ווו ווו ווו ווו", 300, 68, 24));
  const Box last = picture.bounds({0, 46, picture.width() - 1, picture.height() - 1});
  const Box end = picture.bounds({last.left, 46, last.left + 12, picture.height() - 1});
  EXPECT_GT(end.width(), 6);
  EXPECT_LT(end.height(), 6);
}

TEST_F(PainterTest, TextThatWasMeasuredNarrowerThanDrawnIsNeverCut) {
  // A caption as it is composed: measured 2 points narrower than its text rectangle. The same
  // text with more room below must give the same picture.
  for (const double font : {12.0, 19.5, 23.37, 32.0}) {
    for (const char* text : lines) {
      for (double width = 120; width < 700; width += 77) {
        const double height = std::ceil(painter.measureHeight(text, font, width - 20, 1000));
        CaptionDrawing tight = captionDrawing(text, width, 300, font);
        tight.textRect.height = height;
        CaptionDrawing roomy = tight;
        roomy.textRect.height = 280;
        if (height > 280) continue;
        EXPECT_EQ(paintText(tight), paintText(roomy)) << text << " " << font << " " << width;
      }
    }
  }
}

TEST_F(PainterTest, AWordTooLongForTheLineIsBroken) {
  const Box ink = paintText(captionDrawing(std::string(80, 'm'), 200, 200, 20)).bounds();
  EXPECT_LE(ink.right, 201 + 1);
  EXPECT_GT(ink.height(), 60);
}

TEST_F(PainterTest, ASpaceThatCarriesAMarkMayBeWiderThanItsLine) {
  for (const double width : {0.5, 1.0, 2.0, 4.0, 8.0, 16.0}) {
    for (const char* const text : {" \u06df\ufffd", "न\u3000\u200d \u0301\u0301ป "}) {
      const double height = painter.measureHeight(text, 20, width, 1000);
      EXPECT_GE(height, 25) << width;
      EXPECT_LE(height, 200) << width;
    }
  }
}

TEST_F(PainterTest, HeightIsAQuarterMoreThanTheFontForEachLineOfAnyScript) {
  EXPECT_NEAR(painter.measureHeight("one", 20, 400, 1000), 25, 0.01);
  EXPECT_NEAR(painter.measureHeight("一行", 20, 400, 1000), 25, 0.01);
  EXPECT_NEAR(painter.measureHeight("one 💚 一 ا", 20, 400, 1000), 25, 0.01);
  EXPECT_NEAR(painter.measureHeight("one\ntwo", 20, 400, 1000), 50, 0.01);
}

TEST_F(PainterTest, NarrowerTextIsWrappedAtItsWordsAndHigher) {
  const double wide = painter.measureHeight(lines[0], 20, 600, 1000);
  const double narrow = painter.measureHeight(lines[0], 20, 250, 1000);
  EXPECT_NEAR(wide, 25, 0.01);
  EXPECT_NEAR(narrow, 50, 0.01);
  // Two words that do not fit beside each other take a line each.
  EXPECT_NEAR(painter.measureHeight("wwwwww wwwwww", 20, 150, 1000), 50, 0.01);
  // And a third one too, though what was left over on the two lines would have held it in parts.
  EXPECT_NEAR(painter.measureHeight("wwwwww wwwwww wwwwww", 20, 175, 1000), 75, 0.01);
}

TEST_F(PainterTest, HeightIsNeverMoreThanAllowed) {
  EXPECT_EQ(painter.measureHeight("one\ntwo\nthree", 20, 400, 60), 60);
  EXPECT_NEAR(painter.measureHeight("one\ntwo\nthree", 20, 400, 1000), 75, 0.01);
}

TEST_F(PainterTest, RememberedHeightsBelongToTheirTextFontAndWidth) {
  for (int round = 0; round < 2; ++round) {
    for (int i = 0; i < 300; ++i) {
      const std::string text = "line " + std::to_string(i);
      EXPECT_NEAR(painter.measureHeight(text, 20, 400, 1000), 25, 0.01);
      EXPECT_NEAR(painter.measureHeight(text, 24, 400, 1000), 30, 0.01);
      EXPECT_NEAR(painter.measureHeight(text + "\n" + text, 20, 400, 1000), 50, 0.01);
    }
  }
  EXPECT_NEAR(painter.measureHeight(lines[0], 20, 600, 1000), 25, 0.01);
  EXPECT_NEAR(painter.measureHeight(lines[0], 20, 250, 1000), 50, 0.01);
}

// Words, spaces, ends of lines and paragraphs of either direction, in about `size` bytes.
std::string longText(std::mt19937& random, std::size_t size) {
  static constexpr const char* pieces[] = {"night ", "the",    " river ", "\n",      "夜空に",
                                           "שלום ",  "كثيرا ", "🎵",       "e\u0301", " — ",
                                           "\u2028", "ความรัก", "W",       "   ",     "。"};
  std::string text;
  while (text.size() < size) text += pieces[random() % std::size(pieces)];
  return text;
}

TEST_F(PainterTest, HeightOfALongTextIsThatOfTheWholeUpToTheMost) {
  std::mt19937 random(20260511);
  for (int round = 0; round < 12; ++round) {
    const std::string text = longText(random, 1500 + random() % 9000);
    const double width = 60 + static_cast<double>(random() % 700);
    const double whole = painter.measureHeight(text, 20, width, HUGE_VAL);
    for (const double most : {25.0, 60.0, 1000.0, 3000.0, whole - 25, whole, whole + 25}) {
      EXPECT_EQ(painter.measureHeight(text, 20, width, most), std::fmin(whole, most))
          << text.size() << " bytes, width " << width << ", most " << most;
    }
  }
}

TEST_F(PainterTest, ALongTextIsCutWhereItsBeginningIs) {
  std::mt19937 random(4);
  for (int round = 0; round < 10; ++round) {
    const std::string text = "The first words. " + longText(random, 1900);
    const std::string longer = text + longText(random, 100'000);
    for (const double lineCount : {1.0, 2.0}) {
      const double height = std::ceil(24 * 1.25 * lineCount) + 8;
      EXPECT_EQ(paintText(captionDrawing(longer, 300, height, 24)),
                paintText(captionDrawing(text + "and more", 300, height, 24)));
    }
  }
}

// Without a limit to what is laid out, these take minutes each.
TEST_F(PainterTest, GiantTextsAreMeasuredAndPainted) {
  const std::size_t giant = 14U << 20U;
  const std::string texts[] = {std::string(giant, 'w'), std::string(giant, ' '),
                               std::string(giant, '\n'), std::string(giant, '\x01'),
                               std::string(giant, '\xff')};
  for (const std::string& text : texts) {
    EXPECT_LE(painter.measureHeight(text, 20, 300, 1000), 1000);
    EXPECT_TRUE(painter.paint(captionDrawing(text, 300, 38, 24)));
  }
  std::string marks = "e";
  while (marks.size() < giant) marks += "\u0301";
  EXPECT_LE(painter.measureHeight(marks, 20, 300, 1000), 1000);
}

}  // namespace
}  // namespace vellora
