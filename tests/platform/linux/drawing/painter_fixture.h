#pragma once

#include <cstdlib>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "platform/linux/drawing/cairo_picture.h"
#include "platform/linux/drawing/cairo_surface.h"
#include "platform/linux/drawing/pango_painter.h"
#include "support/caption_drawing.h"

namespace vellora {

// Texts of many scripts, each long enough for more than one line.
inline constexpr const char* lines[] = {
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

// A painter, and captions for it.
class PainterTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    setenv("FONTCONFIG_FILE", VELLORA_TEST_FONTS, 1);
    unsetenv("DISPLAY");
    unsetenv("WAYLAND_DISPLAY");
  }

  Picture paint(const CaptionDrawing& drawing) {
    const std::shared_ptr<const CaptionImage> image = painter.paint(drawing);
    EXPECT_TRUE(image);
    return pictureOf(static_cast<const CairoImage&>(*image).pixels());
  }

  // The text alone.
  Picture paintText(CaptionDrawing drawing) {
    drawing.plateColor = {0, 0, 0, 0};
    return paint(drawing);
  }

  PangoPainter painter;
};

}  // namespace vellora
