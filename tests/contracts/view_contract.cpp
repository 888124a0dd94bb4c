#include "contracts/view_contract.h"

namespace vellora {

TEST_P(ViewContract, BoundsBeginAtZeroWhereverTheViewLies) {
  EXPECT_EQ(subject->view().bounds(), (Rect{0, 0, 0, 0}));
  subject->view().setFrame({30, 40, 500, 600});
  EXPECT_EQ(subject->view().bounds(), (Rect{0, 0, 500, 600}));
}

TEST_P(ViewContract, HasNoScaleBeforeItIsInAWindow) {
  EXPECT_EQ(subject->view().windowScale(), std::nullopt);
}

TEST_P(ViewContract, ABitmapIsClearAndHasPixelsForTheBoundsAndNoneOutside) {
  subject->view().setFrame({30, 40, 120, 80});
  const auto bitmap = subject->view().bitmapForCachingDisplay();
  ASSERT_TRUE(bitmap);
  const std::int64_t scale = bitmap->pixelWidth() / 120;
  ASSERT_GE(scale, 1);
  EXPECT_EQ(bitmap->pixelWidth(), 120 * scale);
  EXPECT_EQ(bitmap->pixelHeight(), 80 * scale);
  EXPECT_EQ(bitmap->alpha(0, 0), 0.0);
  EXPECT_EQ(bitmap->alpha(120 * scale - 1, 80 * scale - 1), 0.0);
  EXPECT_EQ(bitmap->alpha(-1, 0), std::nullopt);
  EXPECT_EQ(bitmap->alpha(0, -1), std::nullopt);
  EXPECT_EQ(bitmap->alpha(120 * scale, 0), std::nullopt);
  EXPECT_EQ(bitmap->alpha(0, 80 * scale), std::nullopt);
}

TEST_P(ViewContract, CachingDrawsTheViewOnceThoughItIsOnNoScreen) {
  int drawings = 0;
  subject->view().setDrawFunction([&](Surface&) { ++drawings; });
  subject->view().setFrame({0, 0, 120, 80});
  const auto bitmap = subject->view().bitmapForCachingDisplay();
  ASSERT_TRUE(bitmap);
  EXPECT_EQ(drawings, 0);
  subject->view().cacheDisplay(*bitmap);
  EXPECT_EQ(drawings, 1);
}

TEST_P(ViewContract, ABitmapIsEncodedAsPng) {
  subject->view().setFrame({0, 0, 120, 80});
  const auto bitmap = subject->view().bitmapForCachingDisplay();
  ASSERT_TRUE(bitmap);
  const auto png = bitmap->png();
  ASSERT_TRUE(png);
  ASSERT_GE(png->size(), 8u);
  // The signature of the PNG standard (ISO/IEC 15948).
  EXPECT_EQ(std::vector<std::uint8_t>(png->begin(), png->begin() + 8),
            (std::vector<std::uint8_t>{0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'}));
}

TEST_P(ViewContract, AConfiguredPanelLetsClicksThroughAndIsNotOpaque) {
  for (int round = 0; round < 2; ++round) {
    subject->panel().configure(subject->view());
    EXPECT_TRUE(subject->panel().ignoresMouseEvents());
    EXPECT_FALSE(subject->panel().isOpaque());
  }
}

}  // namespace vellora
