#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/linux/drawing/cairo_surface.h"
#include "platform/linux/drawing/pango_painter.h"
#include "platform/linux/picture.h"

namespace vellora {
namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

constexpr Color plateColor{0.32, 0.32, 0.32, 0.26};
constexpr Color textColor{0.82, 1.0, 0.92, 1.0};
constexpr Color nothing{0, 0, 0, 0};

// Glyphs of simple shape, so that a box in the place of a missing one is seen.
struct Stroke {
  const char* text;
  bool upright;  // else lying
};
constexpr Stroke strokes[] = {
    {"一", false}, {"ー", false}, {"ㅡ", false}, {"—", false},
    {"丨", true},  {"ا", true},   {"ן", true},   {"l", true},
};

constexpr const char* lines[] = {
    "The current translation stays clear",
    "我愿意为你，忘记我姓名，就算多一秒停留在你怀里，失去世界也不可惜",
    "夜空に消えてゆく星の声がいつまでも胸に響いている",
    "사랑은 비를 타고 온다 그대여 이 밤이 지나도록",
    "وأنا أحبك كثيرا يا صديقي القديم، والليل طويل والقمر بعيد",
    "שלום עולם, זה שיר ישן על ים ועל אהבה רחוקה",
    "I 💚 you 🎵 forever 🇫🇷 and ever",
    "L’été est passé — fin d’un œuvre, où ça? Großes Übermaß der Gefühle",
    "Двѣ звѣзды — Έλληνας ουρανός — ความรักที่ยิ่งใหญ่ — हिन्दी में गीत",
};

class PainterTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    setenv("FONTCONFIG_FILE", VELLORA_TEST_FONTS, 1);
    unsetenv("DISPLAY");
    unsetenv("WAYLAND_DISPLAY");
  }

  // A caption with a plate of that size, at `scale`.
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
    const std::shared_ptr<const CaptionImage> image = painter.paint(drawing);
    EXPECT_TRUE(image);
    return Picture(static_cast<const CairoImage&>(*image).pixels());
  }

  // The text alone.
  Picture paintText(CaptionDrawing drawing) {
    drawing.plateColor = nothing;
    return paint(drawing);
  }

  PangoPainter painter;
};

TEST_F(PainterTest, ThePlateHasItsAlphaAndNothingIsOutside) {
  const Picture picture = paint(caption("", 200, 44, 24));
  EXPECT_NEAR(picture.alpha(110, 32), 0.26, 0.5 / 255);
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

TEST_F(PainterTest, ThePlateIsGreyPremultiplied) {
  const Picture picture = paint(caption("", 200, 44, 24));
  for (const double channel : {picture.red(110, 32), picture.green(110, 32), picture.blue(110, 32)})
    EXPECT_NEAR(channel, 0.32 * 0.26, 1.0 / 255);
}

TEST_F(PainterTest, TextOfEveryScriptStaysInItsPlate) {
  for (const double font : {12.0, 19.5, 32.0}) {
    for (const char* text : lines) {
      const double height = std::ceil(font * 2.6) + 8;
      const Picture picture = paintText(caption(text, 400, height, font));
      const Box ink = picture.bounds();
      EXPECT_GE(ink.left, 10 + 6) << text;
      EXPECT_LE(ink.right, 410 - 6) << text;
      EXPECT_GE(ink.top, 10) << text;
      EXPECT_LE(ink.bottom, 10 + height) << text;
      EXPECT_GT(ink.width(), 100) << text;
    }
  }
}

TEST_F(PainterTest, TextHasItsColour) {
  const Picture picture = paintText(caption("████", 200, 44, 24));
  const Box ink = picture.bounds();
  const auto x = ink.left + 4;
  const auto y = (ink.top + ink.bottom) / 2;
  EXPECT_NEAR(picture.alpha(x, y), 1, 1.0 / 255);
  EXPECT_NEAR(picture.red(x, y), 0.82, 1.5 / 255);
  EXPECT_NEAR(picture.green(x, y), 1, 1.5 / 255);
  EXPECT_NEAR(picture.blue(x, y), 0.92, 1.5 / 255);
}

TEST_F(PainterTest, TextOfTheLeftBeginsAtTheLeftAndOfTheRightAtTheRight) {
  for (const char* text : {"Hello", "你好", "こんにちは"}) {
    const Box ink = paintText(caption(text, 400, 44, 20)).bounds();
    EXPECT_LT(ink.left, 19 + 5) << text;
    EXPECT_LT(ink.right, 200) << text;
  }
  for (const char* text : {"مرحبا", "שלום"}) {
    const Box ink = paintText(caption(text, 400, 44, 20)).bounds();
    EXPECT_GT(ink.right, 401 - 5) << text;
    EXPECT_GT(ink.left, 220) << text;
  }
}

TEST_F(PainterTest, EveryScriptHasItsGlyphs) {
  for (const Stroke& stroke : strokes) {
    const Box ink = paintText(caption(stroke.text, 200, 84, 60)).bounds();
    const auto along = stroke.upright ? ink.height() : ink.width();
    const auto across = stroke.upright ? ink.width() : ink.height();
    EXPECT_GT(along, 20) << stroke.text;
    EXPECT_LT(across * 2, along) << stroke.text;
  }
}

TEST_F(PainterTest, EmojiHaveTheirOwnColours) {
  const Picture picture = paintText(caption("🔴", 100, 44, 24));
  const Box ink = picture.bounds();
  const auto x = (ink.left + ink.right) / 2;
  const auto y = (ink.top + ink.bottom) / 2;
  EXPECT_GT(picture.red(x, y), 0.6);
  EXPECT_LT(picture.green(x, y), 0.4);
  EXPECT_LT(picture.blue(x, y), 0.4);
}

TEST_F(PainterTest, TextAndEmojiFadeAlike) {
  for (const char* text : {"██", "🔴🔴"}) {
    CaptionDrawing drawing = caption(text, 100, 44, 24);
    EXPECT_NEAR(paintText(drawing).largestAlpha(), 1, 1.0 / 255) << text;
    drawing.textColor.alpha = 0.6;
    EXPECT_NEAR(paintText(drawing).largestAlpha(), 0.6, 1.5 / 255) << text;
  }
}

TEST_F(PainterTest, OverflowEndsWithAnEllipsis) {
  const double font = 24;
  std::string text;
  for (int i = 0; i < 60; ++i) text += "lll ";
  for (const double lineCount : {1.0, 2.0}) {
    const double height = std::ceil(font * 1.25 * lineCount) + 8;
    const Picture picture = paintText(caption(text, 300, height, font));
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
  const Picture picture = paintText(caption(text, 300, 38, 24));
  const Box ink = picture.bounds();
  const Box end = picture.bounds({ink.left, 0, ink.left + 12, picture.height() - 1});
  EXPECT_GT(end.width(), 6);
  EXPECT_LT(end.height(), 6);
}

TEST_F(PainterTest, LinesThatFindNoRoomFollowOnTheLastOneThatDoes) {
  for (const char* text : {"one\ntwo", "one\r\ntwo", "one\u2028two", "one\u2029two"}) {
    const Box low = paintText(caption(text, 300, 38, 24)).bounds();
    const Box high = paintText(caption(text, 300, 68, 24)).bounds();
    EXPECT_GT(low.width(), high.width() * 3 / 2) << text;
    EXPECT_GT(high.height(), low.height() * 3 / 2) << text;
  }
  // At the side where their script begins.
  EXPECT_GT(paintText(caption("לילה\nיום", 300, 38, 24)).bounds().right, 301 - 5);
  EXPECT_LT(paintText(caption("one\ntwo", 300, 38, 24)).bounds().left, 19 + 5);
}

TEST_F(PainterTest, ACutLineKeepsItsParagraphsDirection) {
  // From the right to the left, though the line that is cut begins with a word from the left: it
  // finds no room on the first one.
  const Picture picture = paintText(
      caption("שלוםשלוםשלוםשלום mmmmmmmm ווו ווו ווו ווו ווו ווו ווו ווו ווו", 300, 68, 24));
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
        CaptionDrawing tight = caption(text, width, 300, font);
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
  const Box ink = paintText(caption(std::string(80, 'm'), 200, 200, 20)).bounds();
  EXPECT_LE(ink.right, 201 + 1);
  EXPECT_GT(ink.height(), 60);
}

TEST_F(PainterTest, AtScaleTwoEverythingIsTwiceAsLarge) {
  for (const char* text : lines) {
    const Box once = paintText(caption(text, 300, 84, 30, 1)).bounds();
    const Box twice = paintText(caption(text, 300, 84, 30, 2)).bounds();
    EXPECT_NEAR(static_cast<double>(twice.left), 2.0 * static_cast<double>(once.left), 3) << text;
    EXPECT_NEAR(static_cast<double>(twice.right), 2.0 * static_cast<double>(once.right), 5) << text;
    EXPECT_NEAR(static_cast<double>(twice.top), 2.0 * static_cast<double>(once.top), 3) << text;
    EXPECT_NEAR(static_cast<double>(twice.bottom), 2.0 * static_cast<double>(once.bottom), 5)
        << text;
  }
}

TEST_F(PainterTest, PicturesThatCannotBeMadeAreNull) {
  for (const auto& [width, height] : {std::pair<std::int64_t, std::int64_t>{0, 64},
                                      {64, 0},
                                      {-5, 64},
                                      {64, -5},
                                      {40'000, 64},
                                      {64, std::int64_t{1} << 40}}) {
    CaptionDrawing drawing = caption("text", 200, 44, 24);
    drawing.pixelWidth = width;
    drawing.pixelHeight = height;
    EXPECT_FALSE(painter.paint(drawing)) << width << " × " << height;
  }
}

TEST_F(PainterTest, WithoutAFontOrRoomThePlateStaysEmpty) {
  const Picture empty = paint(caption("", 200, 44, 24));
  for (const double font : {0.0, -5.0, notANumber, std::numeric_limits<double>::infinity()}) {
    EXPECT_EQ(paint(caption("text", 200, 44, font)), empty);
  }
  CaptionDrawing narrow = caption("text", 200, 44, 24);
  narrow.textRect.width = -3;
  EXPECT_EQ(paint(narrow), empty);
  CaptionDrawing low = caption("text", 200, 44, 24);
  low.textRect.height = 0;
  EXPECT_EQ(paint(low), empty);
}

TEST_F(PainterTest, TextThatIsNoTextIsDrawnAllTheSame) {
  EXPECT_GT(paintText(caption(std::string("a\0b", 3), 200, 44, 24)).bounds().width(), 15);
  EXPECT_GT(paintText(caption("a\xff\xfe z", 200, 44, 24)).bounds().width(), 15);
  EXPECT_GT(painter.measureHeight(std::string("a\0b", 3), 24, 200, 1000), 20);
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

TEST_F(PainterTest, MeasuringBetweenTwoPaintingsChangesNeither) {
  const CaptionDrawing drawing = caption(lines[1], 400, 70, 24, 2);
  const Picture before = paint(drawing);
  painter.measureHeight(lines[2], 12, 90, 1000);
  EXPECT_EQ(paint(drawing), before);
}

TEST_F(PainterTest, ABlurredPictureSpillsIntoTheMarginAndTheSharpOneStays) {
  const auto sharp = painter.paint(caption("text", 200, 44, 24));
  const Picture before(static_cast<const CairoImage&>(*sharp).pixels());
  const auto blurred = painter.blur(*sharp, 2.6);
  ASSERT_TRUE(blurred);
  const auto& image = static_cast<const CairoImage&>(*blurred);
  const Picture after(image.pixels());
  EXPECT_EQ(Picture(static_cast<const CairoImage&>(*sharp).pixels()), before);
  EXPECT_EQ(after.width(), before.width());
  EXPECT_EQ(after.height(), before.height());
  EXPECT_GT(after.alpha(110, 7), 0);
  EXPECT_EQ(before.alpha(110, 7), 0);
  EXPECT_EQ(image.plate(), (Rect{10, 10, 200, 44}));
  EXPECT_EQ(image.size(), (Size{220, 64}));
}

TEST_F(PainterTest, ABlurWithoutAPossibleRadiusFails) {
  const auto sharp = painter.paint(caption("text", 200, 44, 24));
  EXPECT_FALSE(painter.blur(*sharp, notANumber));
  EXPECT_FALSE(painter.blur(*sharp, std::numeric_limits<double>::infinity()));
  EXPECT_TRUE(painter.blur(*sharp, 5.2));
}

}  // namespace
}  // namespace vellora
