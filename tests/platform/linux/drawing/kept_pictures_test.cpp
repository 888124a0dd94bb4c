#include <cstddef>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/linux/drawing/cairo_picture.h"
#include "platform/linux/drawing/cairo_surface.h"
#include "platform/linux/drawing/pango_painter.h"
#include "render/caption_view.h"
#include "support/fake_native_view.h"
#include "support/fake_workspace.h"

namespace vellora {
namespace {

// What a view shows that keeps so many bytes of pictures.
struct Shown {
  Shown(CaptionPainter& painter, std::size_t bytes) : view(painter, native, workspace, bytes) {}

  Picture picture(const std::vector<Caption>& captions, double scale) {
    native.scale = scale;
    const auto bitmap = CairoBitmap::make(static_cast<int>(420 * scale), 300);
    view.setCaptions(captions);
    CairoSurface surface(bitmap->pixels(), scale);
    native.drawFunction(surface);
    return pictureOf(bitmap->pixels());
  }

  Log log;
  FakeNativeView native{log};
  FakeWorkspace workspace{log};
  CaptionView view;
};

const std::vector<std::string> texts{"The current translation stays clear",
                                     "夜空に消えてゆく星の声がいつまでも胸に響いている",
                                     "I 💚 you 🎵 forever 🇫🇷 and ever",
                                     "Двѣ звѣзды",
                                     "L’été est passé, où ça?",
                                     "사랑은 비를 타고 온다",
                                     "我愿意为你",
                                     "شلونك",
                                     "la la la"};

class KeptPicturesTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() { setenv("FONTCONFIG_FILE", VELLORA_TEST_FONTS, 1); }

  PangoPainter painter;
};

// A song that scrolls: rows come and go, soft ones grow sharp and soft again, some come back.
TEST_F(KeptPicturesTest, HowManyPicturesAreKeptChangesNoPixel) {
  PangoPainter other;
  Shown none(painter, 0);
  Shown few(painter, 150'000);
  Shown all(other, std::size_t{1} << 40);
  std::mt19937 random(15);
  std::size_t first = 0;
  for (int step = 0; step < 60; ++step) {
    if (step % 4 == 0) first = random() % 5;
    std::vector<Caption> captions;
    for (std::size_t row = first; row < first + 4; ++row) {
      const double softness = static_cast<double>(random() % 4) / 4;
      captions.push_back({texts[row],
                          {10, 30.0 * static_cast<double>(row - first) + step, 380, 40},
                          16,
                          softness});
    }
    const double scale = step % 20 == 19 ? 1.5 : 1;
    const Picture picture = all.picture(captions, scale);
    ASSERT_EQ(none.picture(captions, scale), picture) << step;
    ASSERT_EQ(few.picture(captions, scale), picture) << step;
  }
  EXPECT_GT(all.view.cachedImageCount(), few.view.cachedImageCount());
  EXPECT_GE(few.view.cachedImageCount(), none.view.cachedImageCount());
  EXPECT_LE(none.view.cachedImageCount(), 8U);
}

}  // namespace
}  // namespace vellora
