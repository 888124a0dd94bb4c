#include "contracts/view_contract.h"
#include "support/caption_drawing.h"

namespace vellora {
namespace {

// Half transparent all over; as large as its points say at that many pixels to each.
std::shared_ptr<const CaptionImage> plainPicture(CaptionPainter& painter, std::int64_t scale) {
  CaptionDrawing drawing = captionDrawing("", 100, 50, 10, static_cast<double>(scale));
  drawing.plate = {-20, -20, 200, 200};
  drawing.plateColor = {1, 1, 1, 0.5};
  return painter.paint(drawing);
}

}  // namespace

TEST_P(DrawingContract, PicturesLieUprightInTheirDestinationsFromTheTopLeft) {
  NativeView& view = subject->view();
  view.setFrame({0, 0, 1200, 800});
  const auto bitmap = view.bitmapForCachingDisplay();
  ASSERT_TRUE(bitmap);
  const std::int64_t scale = bitmap->pixelWidth() / 1200;
  const auto picture = plainPicture(subject->painter(), scale);
  ASSERT_TRUE(picture);
  view.setDrawFunction([&](Surface& surface) {
    surface.drawImage(*picture, {200, 300, 120, 70});
    surface.drawImage(*picture, {200, 500, 240, 140});  // stretched
  });
  view.cacheDisplay(*bitmap);
  // A pixel inside each corner, and one outside.
  const auto expectEdges = [&](std::int64_t left, std::int64_t top, std::int64_t right,
                               std::int64_t bottom) {
    for (const std::int64_t x : {left * scale + 1, right * scale - 2}) {
      for (const std::int64_t y : {top * scale + 1, bottom * scale - 2}) {
        EXPECT_NEAR(bitmap->alpha(x, y).value_or(-1), 0.5, 0.01) << x << " " << y;
      }
    }
    EXPECT_EQ(bitmap->alpha(left * scale - 2, (top + 5) * scale), 0.0);
    EXPECT_EQ(bitmap->alpha(right * scale + 1, (top + 5) * scale), 0.0);
    EXPECT_EQ(bitmap->alpha((left + 5) * scale, top * scale - 2), 0.0);
    EXPECT_EQ(bitmap->alpha((left + 5) * scale, bottom * scale + 1), 0.0);
  };
  expectEdges(200, 300, 320, 370);
  expectEdges(200, 500, 440, 640);
}

TEST_P(DrawingContract, PicturesLieOverWhatIsThere) {
  NativeView& view = subject->view();
  view.setFrame({0, 0, 200, 100});
  const auto bitmap = view.bitmapForCachingDisplay();
  ASSERT_TRUE(bitmap);
  const auto picture = plainPicture(subject->painter(), bitmap->pixelWidth() / 200);
  ASSERT_TRUE(picture);
  view.setDrawFunction([&](Surface& surface) {
    surface.drawImage(*picture, {0, 0, 120, 70});
    surface.drawImage(*picture, {0, 0, 120, 70});
  });
  view.cacheDisplay(*bitmap);
  EXPECT_NEAR(bitmap->alpha(60, 40).value_or(-1), 0.75, 0.01);
}

TEST_P(DrawingContract, InAPanelTheViewHasAScale) {
  subject->panel().configure(subject->view());
  EXPECT_GE(subject->view().windowScale().value_or(0), 1);
}

}  // namespace vellora
