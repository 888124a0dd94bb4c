// Programs that paint slowly, and answer only in between.
#include <chrono>
#include <string>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/linux/accessibility/reading_fixture.h"

namespace vellora {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;

class AccessibilitySlowTest : public ReadingFixture, public testing::WithParamInterface<OwnBus> {
 protected:
  AccessibilitySlowTest() { ownBus = GetParam(); }

  // A player that was read while it was quick. With or without a memory of it.
  void follow(const std::string& toolkit = "gtk") {
    FakeProgram program = programWithRows(3);
    program.toolkit = toolkit;
    start(program);
    readRows(3);
  }
  void paintFor(milliseconds time) {
    player->counts().microsecondsBetweenTurns =
        static_cast<int>(std::chrono::microseconds(time).count());
  }
};

INSTANTIATE_TEST_SUITE_P(Ways, AccessibilitySlowTest,
                         testing::Values(OwnBus::missing, OwnBus::open), nameOfWay);

TEST_P(AccessibilitySlowTest, RowsOfAPlayerThatAnswersAfterATenthOfASecondAreRead) {
  follow();
  paintFor(milliseconds(100));
  EXPECT_THAT(texts(readRows(3)), ElementsAre("row 0", "row 1", "row 2"));
}

TEST_P(AccessibilitySlowTest, RowsOfAPlayerThatAnswersAfterAQuarterOfASecondAreRead) {
  follow();
  paintFor(milliseconds(250));
  EXPECT_THAT(texts(readRows(3)), ElementsAre("row 0", "row 1", "row 2"));
}

// It could not tell everything again in time.
TEST_P(AccessibilitySlowTest, WhatIsTooOldIsAskedAgainOnceThePlayerIsQuick) {
  accessibility = makeLinuxAccessibility(milliseconds(1));
  start(programWithRows(1));
  readRows(1);
  int round = 0;
  EXPECT_TRUE(eventually([&] {
    const std::string told = "round " + std::to_string(++round);
    player->counts().microsecondsBelowRoot = 0;
    player->change(2, row(told, 0));  // and signals nothing, here and below
    if (texts(readRows(1)) != std::vector{told}) return false;
    player->counts().microsecondsBelowRoot = 100'000;
    player->change(2, row("other", 0));
    const auto layout = read();
    return layout && texts(*layout) == std::vector{told};
  }));
  player->counts().microsecondsBelowRoot = 0;
  EXPECT_TRUE(eventually([&] { return texts(readRows(1)) == std::vector<std::string>{"other"}; }));
}

// Its windows are to be listed again, which must not take long, so it is first awaited.
TEST_P(AccessibilitySlowTest, APlayerThatPaintsAsAReadingBeginsIsReadWhenItIsDone) {
  accessibility = makeLinuxAccessibility(milliseconds(1));
  for (const char* toolkit : {"gtk", "Qt"}) {
    follow(toolkit);
    EXPECT_TRUE(eventually([&] {
      player->process().stop();
      std::thread painter([this] {
        std::this_thread::sleep_for(milliseconds(150));
        player->process().resume();
      });
      const auto layout = read();
      painter.join();
      return layout && layout->rows.size() == 3;
    })) << toolkit;
  }
}

// Only the list of windows is asked of the program as a whole.
TEST_P(AccessibilitySlowTest, TheTimeForTheListOfWindowsDoesNotBindWhatIsInThem) {
  for (const char* toolkit : {"gtk", "Qt"}) {
    start([&] {
      FakeProgram program = programWithRows(0);
      program.toolkit = toolkit;
      return program;
    }());
    player->counts().microsecondsBelowRoot = 100'000;
    std::optional<MusicLayout> layout;
    EXPECT_TRUE(eventually([&] {
      layout = read();
      return layout.has_value();
    })) << toolkit;
    EXPECT_EQ(layout.value_or(MusicLayout()).window, (Rect{0, 0, 1000, 700})) << toolkit;
  }
}

TEST_P(AccessibilitySlowTest, AWindowsListThatComesTooLateIsNoList) {
  for (const char* toolkit : {"gtk", "Qt"}) {
    FakeProgram program = programWithRows(3);
    program.toolkit = toolkit;
    program.microsecondsPerCall = 100'000;
    start(program);
    for (int i = 0; i < 3; ++i) EXPECT_FALSE(read().has_value());
  }
}

TEST_P(AccessibilitySlowTest, APlayerThatWasSlowIsReadOnceItIsQuick) {
  for (const char* toolkit : {"gtk", "Qt"}) {
    for (const int time : {90, 200, 290, 310, 600}) {
      follow(toolkit);
      paintFor(milliseconds(time));
      for (int i = 0; i < 3; ++i) read();
      paintFor(milliseconds(0));
      readRows(3);
    }
  }
}

TEST_P(AccessibilitySlowTest, AReadingDoesNotWaitForAPlayerThatPaintsForAMinute) {
  for (const char* toolkit : {"gtk", "Qt"}) {
    follow(toolkit);
    paintFor(std::chrono::minutes(1));
    const double time = seconds([&] {
      read();
      accessibility = makeLinuxAccessibility();  // which has to find its windows first
      read();
    });
    EXPECT_LT(time, hanging) << toolkit;
  }
}

}  // namespace
}  // namespace vellora
