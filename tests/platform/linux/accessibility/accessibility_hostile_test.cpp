// Programs that hang, die, dawdle, lie or have no end.
#include <string>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/linux/accessibility/reading_fixture.h"

namespace vellora {
namespace {

using testing::ElementsAre;

class AccessibilityHostileTest : public ReadingFixture {};

TEST_F(AccessibilityHostileTest, StoppedPlayerGivesNothingWithinTheTimeOfAWalk) {
  start(programWithRows(50));
  readRows(50);
  player->process().stop();
  EXPECT_LT(seconds([&] { EXPECT_FALSE(read().has_value()); }), hanging);
}

TEST_F(AccessibilityHostileTest, StoppedPlayerIsAskedNothingMoreUntilItAnswers) {
  start(programWithRows(50));
  readRows(50);
  player->process().stop();
  const int before = player->counts().all;
  EXPECT_FALSE(read().has_value());
  const double hundred = seconds([&] {
    for (int i = 0; i < 100; ++i) EXPECT_FALSE(read().has_value());
  });
  EXPECT_LT(hundred, hanging);  // none of them waits 0.3 s once more
  player->process().resume();
  // It answers the one question that waited for it, and no other before it is read again.
  ASSERT_TRUE(eventually([&] { return player->counts().all > before; }));
  bus.connections();  // a round trip, so that a second question would have been answered too
  const int questionsWhenItWoke = player->counts().all;
  readRows(50);
  EXPECT_EQ(questionsWhenItWoke, before + 1);
}

TEST_F(AccessibilityHostileTest, PlayerThatStopsMidwayEndsTheReadingInTime) {
  for (const int calls : {1, 3, 7, 8, 9, 40, 120, 300, 420}) {
    FakeProgram program = programWithRows(200);
    program.stopsAfter = calls;
    start(program);
    EXPECT_LT(seconds([&] { read(); }), hanging) << calls;
  }
}

TEST_F(AccessibilityHostileTest, PlayerThatDiesMidwayEndsTheReadingAtOnce) {
  for (const int calls : {0, 1, 3, 7, 8, 9, 40, 120, 300, 420}) {
    FakeProgram program = programWithRows(200);
    program.diesAfter = calls;
    start(program);
    EXPECT_LT(seconds([&] { read(patient); }), hanging) << calls;
    EXPECT_FALSE(read().has_value()) << calls;
  }
}

TEST_F(AccessibilityHostileTest, SlowPlayerIsReadAsFarAsTimeGoes) {
  FakeProgram program = programWithRows(600);
  program.microsecondsPerCall = 10'000;  // and so 6 s for the roles alone
  start(program);
  EXPECT_TRUE(eventually([&] {
    const auto layout = read({.seconds = 2, .messagingTimeout = 20});
    EXPECT_LT(layout ? layout->rows.size() : 0, 600U);
    return layout && layout->rows.size() > 20;
  }));
}

TEST_F(AccessibilityHostileTest, AStoppedRegistryOrServiceGivesNothingWithinATimeoutAndRecovers) {
  start(programWithRows(5));
  services->stop();
  EXPECT_LT(seconds([&] { EXPECT_FALSE(read().has_value()); }), hanging);
  services->resume();
  EXPECT_TRUE(eventually([&] { return read().has_value(); }));
}

TEST_F(AccessibilityHostileTest, AStoppedRegistryOrServiceDoesNotDisturbWhatIsFollowedAlready) {
  start(programWithRows(5));
  readRows(5);
  services->stop();
  readRows(5);
}

TEST_F(AccessibilityHostileTest, ACycleIsReadOnceAndWalkedToTheBudget) {
  FakeProgram program = programWithRows(1);
  program.objects[2].children = {1, 2};
  start(program);
  ASSERT_TRUE(eventually([&] {
    start(program);
    const auto layout = read();
    return layout && layout->rows.size() > 300;
  }));
  EXPECT_LT(player->counts().all, 30);
}

TEST_F(AccessibilityHostileTest, MissingChildrenArePassedOver) {
  FakeProgram program = programWithRows(0);
  program.objects[1].children = {FakeAccessible::nullChild, FakeAccessible::goneChild,
                                 FakeAccessible::foreignChild};
  add(program, 1, row("there", 10));
  start(program);
  EXPECT_THAT(texts(readRows(1)), ElementsAre("there"));
}

TEST_F(AccessibilityHostileTest, AnswersOfTheWrongTypeAreNoAnswers) {
  FakeProgram program = programWithRows(1);
  FakeAccessible odd = row("odd", 0);
  odd.answersWrongTypes = true;
  add(program, 1, odd);
  start(program);
  EXPECT_THAT(texts(readRows(1)), ElementsAre("row 0"));
  program.objects[1].answersWrongTypes = true;
  start(program);
  EXPECT_FALSE(read().has_value());
  program.objects[0].answersWrongTypes = true;
  start(program);
  EXPECT_FALSE(read().has_value());
}

TEST_F(AccessibilityHostileTest, OnePropertyOfTheWrongTypeLeavesTheOthers) {
  for (const char* toolkit : {"gtk", "Qt"}) {
    FakeProgram program = programWithRows(0);
    program.toolkit = toolkit;
    FakeAccessible odd = row("", 0);
    odd.description = "described";
    odd.nameIsANumber = true;
    add(program, 1, odd);
    start(program);
    EXPECT_THAT(texts(readRows(1)), ElementsAre("described")) << toolkit;
  }
}

TEST_F(AccessibilityHostileTest, DeepTreeIsReadToItsTwentyFourthLevelOnly) {
  FakeProgram program = programWithRows(0);
  std::size_t parent = 1;
  for (int depth = 1; depth <= 60; ++depth) {
    parent = add(program, parent, row(std::to_string(depth), depth));
  }
  std::optional<MusicLayout> layout;
  ASSERT_TRUE(eventually([&] {
    start(program);
    layout = read();
    return layout && layout->rows.size() == 23;
  }));
  EXPECT_EQ(layout->rows.back().text, "23");
  EXPECT_EQ(player->counts().getAll, 1 + 24);  // the root's is one
}

TEST_F(AccessibilityHostileTest, AMillionChildrenAreNeverListed) {
  FakeProgram program = programWithRows(1);
  program.objects[1].copies = 1'000'000;
  program.objects[1].copyOf = 2;
  start(program);
  const auto layout = read(patient);
  ASSERT_TRUE(layout.has_value());
  EXPECT_EQ(layout->rows.size(), 699U);
  EXPECT_LE(player->counts().children, 1);  // the root's
  EXPECT_LE(player->counts().all, 4 * 700 + 10);
}

TEST_F(AccessibilityHostileTest, AMillionWindowsAreNeverListed) {
  FakeProgram program = programWithRows(1);
  program.objects[0].copies = 1'000'000;
  program.objects[0].copyOf = 1;
  ASSERT_TRUE(eventually([&] {
    start(program);
    return read().has_value() && player->counts().states >= 64;  // all of them in time
  }));
  EXPECT_EQ(player->counts().states, 64);
  EXPECT_LE(player->counts().childAtIndex, 700);
}

TEST_F(AccessibilityHostileTest, WideTreesOfWideTreesAreBounded) {
  FakeProgram program = programWithRows(1);
  FakeAccessible& leaf = program.objects[2];
  leaf.copies = 690;
  leaf.copyOf = 2;
  program.objects[1].copies = 690;
  program.objects[1].copyOf = 2;
  start(program);
  EXPECT_LT(seconds([&] { read(); }), hanging);
  // What a walk visits, and what was under way on each level before its first branch was known.
  EXPECT_LT(player->counts().getAll, 700 + 23 * 32);
}

// Deep down, so that a walk soon leaves what has no end, and wants the frame of the row behind it.
TEST_F(AccessibilityHostileTest, ABranchWithoutEndBeforeARowIsNotSearchedForIt) {
  FakeProgram program = programWithRows(0);
  std::size_t parent = 1;
  for (int depth = 1; depth <= 20; ++depth) parent = add(program, parent, {});
  const std::size_t endless = add(program, parent, {});
  const std::size_t back = add(program, endless, {});
  program.objects[endless].children = {back, back, back};
  program.objects[back].children = {endless, endless};
  add(program, parent, row("behind", 10));
  start(program);
  EXPECT_LT(seconds([&] { read(); }), hanging);
  EXPECT_THAT(texts(readRows(1)), ElementsAre("behind"));
}

TEST_F(AccessibilityHostileTest, ACountThatLiesChangesNothing) {
  for (const std::int32_t claimed : {1, 3, 600, -1}) {
    FakeProgram program = programWithRows(5);
    program.objects[1].claimedChildCount = claimed;
    start(program);
    readRows(5);
  }
}

TEST_F(AccessibilityHostileTest, TrustIsAskedWhileAnotherThreadReads) {
  start(programWithRows(100));
  ASSERT_TRUE(accessibility->isTrusted());
  std::thread reader([this] {
    for (int i = 0; i < 10; ++i) read();
  });
  for (int i = 0; i < 2000; ++i) EXPECT_TRUE(accessibility->isTrusted());
  reader.join();
}

TEST_F(AccessibilityHostileTest, TwoReadingsAtOnceDoNotMix) {
  start(programWithRows(60));
  std::thread other([this] {
    for (int i = 0; i < 5; ++i) readRows(60);
  });
  for (int i = 0; i < 5; ++i) readRows(60);
  other.join();
}

}  // namespace
}  // namespace vellora
