#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "painter_fixture.h"

namespace vellora {
namespace {

// What is left of texts that have more lines than room, and of characters that have no shape.
class PainterCutTest : public PainterTest {
 protected:
  static constexpr double font = 24;

  Picture inOneLine(const std::string& text, double width = 300) {
    return paintText(captionDrawing(text, width, 38, font));
  }

  // The space between the three dots at one side and the ink beside them, in pixels.
  static double gapBesideDots(const Picture& picture, bool atTheRight) {
    const Box ink = picture.bounds();
    const std::int64_t step = atTheRight ? -1 : 1;
    std::int64_t x = atTheRight ? ink.right : ink.left;
    const auto pass = [&](bool overInk) {
      const std::int64_t from = x;
      while ((picture.bounds({x, 0, x, picture.height() - 1}).width() == 1) == overInk) x += step;
      return static_cast<double>(std::abs(x - from));
    };
    for (int dot = 0; dot < 2; ++dot) {
      pass(true);
      pass(false);
    }
    pass(true);
    return pass(false);
  }
};

TEST_F(PainterCutTest, LinesThatAreJoinedHaveOneSpaceBetweenThem) {
  const Picture joined = inOneLine("one three");
  for (const char* text : {"one\n\nthree", "one \nthree", "one\n \t three", "one   \r\n\r\n three",
                           "one\n\u2028\u2029three", "one\v\fthree\n", "one\u0085three\n\n "}) {
    EXPECT_EQ(inOneLine(text), joined) << text;
  }
  EXPECT_EQ(inOneLine("יום \n\n לילה"), inOneLine("יום לילה"));
}

TEST_F(PainterCutTest, NoBlankStandsBeforeTheEllipsis) {
  // Wherever the text is cut, the dots stand as far from the last letter.
  std::string fromTheLeft;
  std::string fromTheRight;
  for (int i = 0; i < 60; ++i) fromTheLeft += i % 2 == 0 ? "lll  " : "lll\u00a0";
  for (int i = 0; i < 60; ++i) fromTheRight += "ווו  ";
  const auto left = gapBesideDots(inOneLine("lll…"), true);
  const auto right = gapBesideDots(inOneLine("ווו…"), false);
  for (int width = 200; width < 260; ++width) {
    EXPECT_NEAR(gapBesideDots(inOneLine(fromTheLeft, width), true), left, 1) << width;
    EXPECT_NEAR(gapBesideDots(inOneLine(fromTheRight, width), false), right, 1) << width;
  }
}

TEST_F(PainterCutTest, AnyTextIsDrawnWholeInItsMeasuredHeight) {
  constexpr const char* pieces[] = {"word ",  "  ",    "\n",     "\r\n",        "\v",      "\u2028",
                                    "\u2029", "\x1b",  "\u0085", "夜空に",      "我願意",  "骨",
                                    "مرحبا ", "שלום ", "💚",      "👩‍👧", "e\u0301", "\t",
                                    "\u00a0", "\xff",  "한글 "};
  std::mt19937 random(20261122);
  std::uniform_int_distribution<std::size_t> piece(0, std::size(pieces) - 1);
  for (int round = 0; round < 150; ++round) {
    std::string text;
    for (int i = 0; i < 14; ++i) text += pieces[piece(random)];
    CaptionDrawing tight = captionDrawing(text, 240, 560, font);
    // Captions are measured 2 points narrower than they are drawn.
    tight.textRect.height = painter.measureHeight(text, font, 220, 1000);
    ASSERT_LE(tight.textRect.height, 550);
    CaptionDrawing roomy = tight;
    roomy.textRect.height = 552;
    EXPECT_EQ(paintText(tight), paintText(roomy)) << ::testing::PrintToString(text);
  }
}

TEST_F(PainterCutTest, ControlCharactersShowNothing) {
  const Picture plain = inOneLine("ab");
  for (char32_t character = 0; character < 0xA0; ++character) {
    const bool isLetter = character >= 0x20 && character < 0x7F;
    const bool isBlank = (character >= '\t' && character <= '\r') || character == 0x85;
    if (isLetter || isBlank) continue;
    std::string text = "a";
    if (character < 0x80) {
      text.push_back(static_cast<char>(character));
    } else {
      text.append({'\xC2', static_cast<char>(character)});
    }
    EXPECT_EQ(inOneLine(text + "b"), plain) << static_cast<unsigned>(character);
    EXPECT_NEAR(painter.measureHeight(text + "b", 20, 400, 1000), 25, 0.01);
  }
}

TEST_F(PainterCutTest, EveryEndOfALineEndsOne) {
  const Picture two = paintText(captionDrawing("one\ntwo", 300, 68, font));
  for (const char* text : {"one\rtwo", "one\r\ntwo", "one\vtwo", "one\ftwo", "one\u0085two",
                           "one\u2028two", "one\u2029two"}) {
    EXPECT_EQ(paintText(captionDrawing(text, 300, 68, font)), two) << text;
    EXPECT_NEAR(painter.measureHeight(text, 20, 400, 1000), 50, 0.01) << text;
  }
}

}  // namespace
}  // namespace vellora
