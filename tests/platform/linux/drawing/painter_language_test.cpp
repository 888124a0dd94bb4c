#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pango/pangocairo.h>

#include "painter_fixture.h"
#include "platform/linux/drawing/text_setter.h"

namespace vellora {
namespace {

using ::testing::ElementsAre;

// Captions beside the same texts in one of the faces of Noto Sans CJK, which differ in nothing but
// the letter forms of their languages.
class PainterLanguageTest : public PainterTest {
 protected:
  static constexpr double font = 32;

  // One line as captions have it: the system font in the middle, hinted and rounded nowhere.
  Picture inFace(const CaptionDrawing& drawing, const std::string& face) {
    const PangoFontMapPtr fontMap(pango_cairo_font_map_new());
    const PangoContextPtr context(pango_font_map_create_context(fontMap.get()));
    const CairoFontOptionsPtr options(cairo_font_options_create());
    cairo_font_options_set_antialias(options.get(), CAIRO_ANTIALIAS_GRAY);
    cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
    pango_cairo_context_set_font_options(context.get(), options.get());
    pango_context_set_round_glyph_positions(context.get(), FALSE);
    pango_context_set_language(context.get(),
                               pango_language_from_string(face == "KR" ? "ko" : "xx"));
    const PangoFontPtr description(
        pango_font_description_from_string(("Inter, Noto Sans CJK " + face).c_str()));
    pango_font_description_set_weight(description.get(), PANGO_WEIGHT_MEDIUM);
    pango_font_description_set_absolute_size(description.get(), font * PANGO_SCALE);
    const PangoMetricsPtr metrics(pango_context_get_metrics(context.get(), description.get(),
                                                            pango_language_from_string("en")));
    const double ascent = pango_font_metrics_get_ascent(metrics.get()) * 1.0 / PANGO_SCALE;
    const double descent = pango_font_metrics_get_descent(metrics.get()) * 1.0 / PANGO_SCALE;
    const PangoLayoutPtr layout(pango_layout_new(context.get()));
    pango_layout_set_font_description(layout.get(), description.get());
    pango_layout_set_text(layout.get(), drawing.text.c_str(), -1);
    const CairoSurfacePtr pixels = makePixels(drawing.pixelWidth, drawing.pixelHeight);
    const CairoContextPtr cairo(cairo_create(pixels.get()));
    cairo_set_source_rgb(cairo.get(), 0.82, 1, 0.92);
    cairo_move_to(cairo.get(), drawing.textRect.x,
                  drawing.textRect.y + (TextSetter::lineHeight * font + ascent - descent) / 2);
    pango_cairo_show_layout_line(cairo.get(), pango_layout_get_line_readonly(layout.get(), 0));
    return pictureOf(pixels.get());
  }

  // The faces in which the text looks as it does in a caption.
  std::vector<std::string> facesOf(const std::string& text) {
    const CaptionDrawing drawing = captionDrawing(text, 700, 48, font);
    const Picture picture = paintText(drawing);
    std::vector<std::string> faces;
    for (const char* face : {"JP", "KR", "SC", "TC"}) {
      if (inFace(drawing, face) == picture) faces.emplace_back(face);
    }
    return faces;
  }
};

TEST_F(PainterLanguageTest, ChineseHasTheFormsOfItsOwnCharacters) {
  EXPECT_THAT(facesOf("我愿意为你，骨头、游戏。"), ElementsAre("SC"));
  EXPECT_THAT(facesOf("我願意為你，骨頭、遊戲。"), ElementsAre("TC"));
  EXPECT_THAT(facesOf("佢哋話我愛你，骨頭。"), ElementsAre("TC"));
  EXPECT_THAT(facesOf("骨，ㄍㄨˇ"), ElementsAre("TC"));
  EXPECT_THAT(facesOf("他说：「骨头」。"), ElementsAre("SC"));
  EXPECT_THAT(facesOf("我爱你／我愛你，骨"), ElementsAre("TC"));
}

TEST_F(PainterLanguageTest, JapaneseAndKoreanHaveTheirs) {
  EXPECT_THAT(facesOf("夜空に消える、骨直遊"), ElementsAre("JP"));
  EXPECT_THAT(facesOf("舊い櫻の國、骨直遊"), ElementsAre("JP"));
  EXPECT_THAT(facesOf("天気図、遊直骨"), ElementsAre("JP"));
  EXPECT_THAT(facesOf("骨直遊와 한글"), ElementsAre("KR"));
}

TEST_F(PainterLanguageTest, HanCharactersAloneHaveTheFormsOfTheirTranslation) {
  EXPECT_TRUE(painter.setTranslation({"夜空に消える", "骨直遊"}));
  EXPECT_THAT(facesOf("夜空、骨直遊"), ElementsAre("JP"));
  EXPECT_FALSE(painter.setTranslation({"星に願いを", "今"}));  // Japanese still
  EXPECT_TRUE(painter.setTranslation({"我願意為你", "在月光下，我的朋友，"}));
  EXPECT_THAT(facesOf("在月光下，我的骨"), ElementsAre("TC"));
  EXPECT_TRUE(painter.setTranslation({"Hello"}));
  EXPECT_THAT(facesOf("在月光下，我的骨"), ElementsAre("SC"));
}

TEST_F(PainterLanguageTest, TheRestOfACutTextHasTheLanguageOfTheWhole) {
  // Neither is cut short: the last two lines of the first stand on one.
  const Picture cut = paintText(captionDrawing("夜空に消える\n骨直遊\n東京", 400, 88, font));
  const Picture whole = paintText(captionDrawing("夜空に消える\n骨直遊 東京", 400, 88, font));
  EXPECT_EQ(cut, whole);
}

}  // namespace
}  // namespace vellora
