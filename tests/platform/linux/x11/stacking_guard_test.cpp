#include "platform/linux/x11/stacking_guard.h"

#include <gtest/gtest.h>

namespace vellora {
namespace {

TEST(StackingGuardTest, AWindowRaisedSeldomIsAlwaysAnswered) {
  StackingGuard guard;
  for (int i = 0; i < 100; ++i) EXPECT_TRUE(guard.answers(7, i * 1.5));
}

TEST(StackingGuardTest, TheFourthRoundWithinASecondOfTheLastIsGivenUp) {
  StackingGuard guard;
  EXPECT_TRUE(guard.answers(7, 0));
  EXPECT_TRUE(guard.answers(7, 1.0));  // exactly a second still counts as soon
  EXPECT_TRUE(guard.answers(7, 1.5));
  EXPECT_FALSE(guard.givesWayTo(7, 1.5));
  EXPECT_FALSE(guard.answers(7, 2.0));
  EXPECT_TRUE(guard.givesWayTo(7, 2.0));
  EXPECT_TRUE(guard.answers(8, 2.0));
  EXPECT_FALSE(guard.givesWayTo(8, 2.0));
}

TEST(StackingGuardTest, AfterASecondOfRestItIsForgiven) {
  StackingGuard guard;
  for (int i = 0; i < 4; ++i) guard.answers(7, 0);
  EXPECT_TRUE(guard.givesWayTo(7, 1.0));
  EXPECT_FALSE(guard.givesWayTo(7, 1.1));
  EXPECT_TRUE(guard.answers(7, 1.1));
}

TEST(StackingGuardTest, ThatSecondBeginsAnewWhenItMoves) {
  StackingGuard guard;
  for (int i = 0; i < 4; ++i) guard.answers(7, 0);
  guard.noteMoved(7, 0.9);
  guard.noteMoved(8, 1.8);
  EXPECT_TRUE(guard.givesWayTo(7, 1.8));
  guard.noteMoved(7, 2.0);  // forgiven by then
  EXPECT_FALSE(guard.givesWayTo(7, 2.0));
}

TEST(StackingGuardTest, AMoveIsNoRound) {
  StackingGuard guard;
  for (int i = 0; i < 10; ++i) guard.noteMoved(7, 0);
  EXPECT_TRUE(guard.answers(7, 0));
  for (int i = 0; i < 10; ++i) guard.noteMoved(7, 0.9);
  EXPECT_TRUE(guard.answers(7, 1.1));
}

TEST(StackingGuardTest, AWindowThatWentAwayBeginsAnew) {
  StackingGuard guard;
  for (int i = 0; i < 5; ++i) guard.answers(7, 0);
  EXPECT_FALSE(guard.answers(7, 0));
  guard.forget(7);
  EXPECT_TRUE(guard.answers(7, 0));
  for (int i = 0; i < 5; ++i) guard.answers(7, 0);
  guard.reset();
  EXPECT_TRUE(guard.answers(7, 0));
}

}  // namespace
}  // namespace vellora
