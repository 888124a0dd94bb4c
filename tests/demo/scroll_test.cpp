#include "playback/scroll.h"

#include <gtest/gtest.h>

namespace vellora::demo {
namespace {

TEST(Scroll, PutsTheRowsTopThirtyFivePercentDownTheViewport) {
  EXPECT_EQ(Scroll::valueFor(550, 1000), 200);
  EXPECT_EQ(Scroll::valueFor(350, 1000), 0);
  EXPECT_EQ(Scroll::valueFor(100, 1000), 0) << "there is nothing above the begin";
  EXPECT_EQ(Scroll::valueFor(400.4, 101), 365) << "whole pixels";
}

TEST(Scroll, GlidesFromWhereItIsToTheTargetAndRests) {
  Scroll scroll;
  scroll.jumpTo(100);
  EXPECT_EQ(scroll.value(5), 100);
  EXPECT_FALSE(scroll.isGliding(5));
  scroll.glideTo(200, 5);
  EXPECT_EQ(scroll.value(5), 100);
  EXPECT_TRUE(scroll.isGliding(5.2));
  double before = 100;
  for (double time = 5.05; time < 5 + Scroll::duration - 0.01; time += 0.05) {
    EXPECT_GT(scroll.value(time), before);
    EXPECT_LT(scroll.value(time), 200);
    before = scroll.value(time);
  }
  EXPECT_EQ(scroll.value(5 + Scroll::duration), 200);
  EXPECT_EQ(scroll.value(50), 200);
  EXPECT_FALSE(scroll.isGliding(5 + Scroll::duration));
}

TEST(Scroll, ASecondGlideBeginsWhereTheFirstStands) {
  Scroll scroll;
  scroll.glideTo(100, 0);
  const double middle = scroll.value(0.1);
  scroll.glideTo(0, 0.1);
  EXPECT_DOUBLE_EQ(scroll.value(0.1), middle);
  EXPECT_EQ(scroll.target(), 0);
}

TEST(Scroll, AJumpEndsAGlide) {
  Scroll scroll;
  scroll.glideTo(100, 0);
  scroll.jumpTo(40);
  EXPECT_EQ(scroll.value(0.1), 40);
  EXPECT_FALSE(scroll.isGliding(0.1));
}

}  // namespace
}  // namespace vellora::demo
