#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <utility>

#include <gtest/gtest.h>
#include <pango/pangocairo.h>

#include "painter_fixture.h"

namespace vellora {
namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

// Glyphs of simple shape, so that a box in the place of a missing one is seen.
struct Stroke {
  const char* text;
  bool upright;  // else lying
};
constexpr Stroke strokes[] = {
    {"一", false}, {"ー", false}, {"ㅡ", false}, {"—", false},
    {"丨", true},  {"ا", true},   {"ן", true},   {"l", true},
};

TEST_F(PainterTest, ThePlateIsGreyPremultiplied) {
  const Picture picture = paint(captionDrawing("", 200, 44, 24));
  for (const double channel : {picture.red(110, 32), picture.green(110, 32), picture.blue(110, 32)})
    EXPECT_NEAR(channel, 0.32 * 0.26, 1.0 / 255);
}

TEST_F(PainterTest, TextOfEveryScriptStaysInItsPlate) {
  for (const double font : {12.0, 19.5, 32.0}) {
    for (const char* text : lines) {
      const double height = std::ceil(font * 2.6) + 8;
      const Picture picture = paintText(captionDrawing(text, 400, height, font));
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
  const Picture picture = paintText(captionDrawing("████", 200, 44, 24));
  const Box ink = picture.bounds();
  const auto x = ink.left + 4;
  const auto y = (ink.top + ink.bottom) / 2;
  EXPECT_NEAR(picture.alpha(x, y), 1, 1.0 / 255);
  EXPECT_NEAR(picture.red(x, y), 0.82, 1.5 / 255);
  EXPECT_NEAR(picture.green(x, y), 1, 1.5 / 255);
  EXPECT_NEAR(picture.blue(x, y), 0.92, 1.5 / 255);
}

// Width of the ink of a text in Inter, as Pango sets it without a width.
double inkWidth(const std::string& text, double fontSize, PangoWeight weight) {
  const PangoFontMapPtr fontMap(pango_cairo_font_map_new());
  const PangoContextPtr context(pango_font_map_create_context(fontMap.get()));
  pango_context_set_round_glyph_positions(context.get(), FALSE);
  const PangoFontPtr font(pango_font_description_from_string("Inter"));
  pango_font_description_set_weight(font.get(), weight);
  pango_font_description_set_absolute_size(font.get(), fontSize * PANGO_SCALE);
  const PangoLayoutPtr layout(pango_layout_new(context.get()));
  pango_layout_set_font_description(layout.get(), font.get());
  pango_layout_set_text(layout.get(), text.c_str(), -1);
  PangoRectangle ink;
  pango_layout_get_extents(layout.get(), &ink, nullptr);
  return static_cast<double>(ink.width) / PANGO_SCALE;
}

TEST_F(PainterTest, TextIsSetInTheSystemFontInMediumWeight) {
  constexpr const char* text = "The current translation stays";
  const double medium = inkWidth(text, 40, PANGO_WEIGHT_MEDIUM);
  EXPECT_GT(std::abs(inkWidth(text, 40, PANGO_WEIGHT_NORMAL) - medium), 4);
  EXPECT_GT(std::abs(inkWidth(text, 40, PANGO_WEIGHT_SEMIBOLD) - medium), 4);
  const Box ink = paintText(captionDrawing(text, 900, 70, 40)).bounds();
  EXPECT_NEAR(static_cast<double>(ink.width()), medium, 2);
}

TEST_F(PainterTest, LettersStandWhereTheFontSaysNotOnWholePixels) {
  const std::string text(60, 'l');
  const Box ink = paintText(captionDrawing(text, 400, 44, 13)).bounds();
  EXPECT_NEAR(static_cast<double>(ink.width()), inkWidth(text, 13, PANGO_WEIGHT_MEDIUM), 2);
}

TEST_F(PainterTest, TextStandsInTheMiddleOfItsLine) {
  // Ascent and descent of the whole font, of which the text below shows only some.
  const Box ink = paintText(captionDrawing("Åjg", 300, 108, 80)).bounds();
  EXPECT_GE(ink.top, 14);
  EXPECT_LE(ink.bottom, 14 + 100);
  EXPECT_NEAR(static_cast<double>(ink.top - 14), static_cast<double>(14 + 100 - ink.bottom), 12);
}

TEST_F(PainterTest, TextOfTheLeftBeginsAtTheLeftAndOfTheRightAtTheRight) {
  for (const char* text : {"Hello", "你好", "こんにちは"}) {
    const Box ink = paintText(captionDrawing(text, 400, 44, 20)).bounds();
    EXPECT_LT(ink.left, 19 + 5) << text;
    EXPECT_LT(ink.right, 200) << text;
  }
  for (const char* text : {"مرحبا", "שלום"}) {
    const Box ink = paintText(captionDrawing(text, 400, 44, 20)).bounds();
    EXPECT_GT(ink.right, 401 - 5) << text;
    EXPECT_GT(ink.left, 220) << text;
  }
}

TEST_F(PainterTest, EveryScriptHasItsGlyphs) {
  for (const Stroke& stroke : strokes) {
    const Box ink = paintText(captionDrawing(stroke.text, 200, 84, 60)).bounds();
    const auto along = stroke.upright ? ink.height() : ink.width();
    const auto across = stroke.upright ? ink.width() : ink.height();
    EXPECT_GT(along, 20) << stroke.text;
    EXPECT_LT(across * 2, along) << stroke.text;
  }
}

TEST_F(PainterTest, EmojiHaveTheirOwnColours) {
  const Picture picture = paintText(captionDrawing("🔴", 100, 44, 24));
  const Box ink = picture.bounds();
  const auto x = (ink.left + ink.right) / 2;
  const auto y = (ink.top + ink.bottom) / 2;
  EXPECT_GT(picture.red(x, y), 0.6);
  EXPECT_LT(picture.green(x, y), 0.4);
  EXPECT_LT(picture.blue(x, y), 0.4);
}

TEST_F(PainterTest, TextAndEmojiFadeAlike) {
  for (const char* text : {"██", "🔴🔴"}) {
    CaptionDrawing drawing = captionDrawing(text, 100, 44, 24);
    EXPECT_NEAR(paintText(drawing).largestAlpha(), 1, 1.0 / 255) << text;
    drawing.textColor.alpha = 0.6;
    EXPECT_NEAR(paintText(drawing).largestAlpha(), 0.6, 1.5 / 255) << text;
  }
}

TEST_F(PainterTest, AtScaleTwoEverythingIsTwiceAsLarge) {
  for (const char* text : lines) {
    const Box once = paintText(captionDrawing(text, 300, 84, 30, 1)).bounds();
    const Box twice = paintText(captionDrawing(text, 300, 84, 30, 2)).bounds();
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
    CaptionDrawing drawing = captionDrawing("text", 200, 44, 24);
    drawing.pixelWidth = width;
    drawing.pixelHeight = height;
    EXPECT_FALSE(painter.paint(drawing)) << width << " × " << height;
  }
}

TEST_F(PainterTest, WithoutAFontOrRoomThePlateStaysEmpty) {
  const Picture empty = paint(captionDrawing("", 200, 44, 24));
  for (const double font : {0.0, -5.0, notANumber, std::numeric_limits<double>::infinity()}) {
    EXPECT_EQ(paint(captionDrawing("text", 200, 44, font)), empty);
  }
  CaptionDrawing narrow = captionDrawing("text", 200, 44, 24);
  narrow.textRect.width = -3;
  EXPECT_EQ(paint(narrow), empty);
  CaptionDrawing low = captionDrawing("text", 200, 44, 24);
  low.textRect.height = 0;
  EXPECT_EQ(paint(low), empty);
}

TEST_F(PainterTest, TextThatIsNoTextIsDrawnAllTheSame) {
  EXPECT_GT(paintText(captionDrawing(std::string("a\0b", 3), 200, 44, 24)).bounds().width(), 15);
  EXPECT_GT(paintText(captionDrawing("a\xff\xfe z", 200, 44, 24)).bounds().width(), 15);
  EXPECT_GT(painter.measureHeight(std::string("a\0b", 3), 24, 200, 1000), 20);
}

TEST_F(PainterTest, MeasuringBetweenTwoPaintingsChangesNeither) {
  const CaptionDrawing drawing = captionDrawing(lines[1], 400, 70, 24, 2);
  const Picture before = paint(drawing);
  painter.measureHeight(lines[2], 12, 90, 1000);
  EXPECT_EQ(paint(drawing), before);
}

TEST_F(PainterTest, ABlurredPictureKeepsItsSizeAndPlate) {
  const auto sharp = painter.paint(captionDrawing("text", 200, 44, 24, 2));
  const auto blurred = painter.blur(*sharp, 2.6);
  ASSERT_TRUE(blurred);
  const auto& image = static_cast<const CairoImage&>(*blurred);
  EXPECT_EQ(image.plate(), (Rect{10, 10, 200, 44}));
  EXPECT_EQ(image.size(), (Size{220, 64}));
}

TEST_F(PainterTest, ABlurWithoutAPossibleRadiusFails) {
  const auto sharp = painter.paint(captionDrawing("text", 200, 44, 24));
  EXPECT_FALSE(painter.blur(*sharp, notANumber));
  EXPECT_FALSE(painter.blur(*sharp, std::numeric_limits<double>::infinity()));
  EXPECT_TRUE(painter.blur(*sharp, 5.2));
}

}  // namespace
}  // namespace vellora
