// How long a player is listened to, and over which connection.
#include <chrono>

#include <gio/gio.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/linux/accessibility/memory_fixture.h"

namespace vellora {
namespace {

using testing::ElementsAre;

class AccessibilityListeningTest : public MemoryFixture,
                                   public testing::WithParamInterface<OwnBus> {
 protected:
  AccessibilityListeningTest() { ownBus = GetParam(); }
};

INSTANTIATE_TEST_SUITE_P(Ways, AccessibilityListeningTest,
                         testing::Values(OwnBus::missing, OwnBus::open), nameOfWay);

TEST_P(AccessibilityListeningTest, APlayerThatHangsIsAskedOnceAlthoughOthersAreReadMeanwhile) {
  start(program);
  FakeProgramProcess other(bus, program);
  readTexts();
  player->process().stop();
  const int before = player->counts().all;
  for (int i = 0; i < 5; ++i) {
    EXPECT_FALSE(read().has_value());
    readMusic(other.pid(), *accessibility, clock);
  }
  wake();
  EXPECT_EQ(player->counts().all, before + 1);
}

// The first window's answer is the other program's then, and says nothing of the player.
TEST_P(AccessibilityListeningTest, APlayerThatHangsIsAskedOnceAlthoughItsFirstWindowIsOfAnother) {
  FakeProgramProcess other(bus, program);
  object(0).busOfFirstChild = other.busName();
  for (int i = 0; i < 5; ++i) object(0).children.push_back(1);
  start(program);
  readTexts();
  player->process().stop();
  const int before = player->counts().all;
  read();
  wake();
  EXPECT_EQ(player->counts().all, before + 1);
}

TEST_P(AccessibilityListeningTest, AFloodOfSignalsOutlastsNoReadingAndHidesNoChange) {
  start(program);
  readTexts();
  object(rows[1]).name = "after the flood";
  player->change(rows[1], object(rows[1]), nameChanged, 100'000);
  // No machine takes in so many signals in a millisecond; the answer comes behind them.
  EXPECT_FALSE(read({.seconds = 1e-3, .messagingTimeout = 1e-3F}).has_value());
  EXPECT_THAT(readTexts(), ElementsAre("row 0", "after the flood", "row 2"));
}

// Or they would gather at the bus: what is not read is not taken in.
TEST_P(AccessibilityListeningTest, APlayerThatHangsIsNoLongerHeardUntilItIsReadAgain) {
  accessibility = makeLinuxAccessibility();
  start(program);
  readTexts();
  EXPECT_EQ(bus.matchRules(player->busName()), 6U);
  player->process().stop();
  EXPECT_TRUE(eventually([&] {
    EXPECT_FALSE(read().has_value());
    return bus.matchRules(player->busName()) == 0;
  }));
  player->process().resume();
  readTexts();
  EXPECT_EQ(bus.matchRules(player->busName()), 6U);
}

TEST_P(AccessibilityListeningTest, SubscriptionsDoNotAddUp) {
  accessibility = makeLinuxAccessibility(std::chrono::milliseconds(1));
  start(program);
  for (int i = 0; i < 20; ++i) readTexts();
  EXPECT_EQ(bus.matchRules(player->busName()), 6U);
}

// Signals wait at the bus for as long as nobody reads.
TEST_P(AccessibilityListeningTest, AConnectionThatRestsIsClosedAndTheNextReadingHasAnother) {
  start(program);
  const std::size_t before = bus.connections();
  readTexts();
  ASSERT_GT(bus.connections(), before);
  EXPECT_TRUE(eventually([&] {
    g_main_context_iteration(nullptr, FALSE);
    return bus.connections() == before;
  }));
  change(rows[1], [](FakeAccessible& row) { row.name = "other"; });
  EXPECT_THAT(readTexts(), ElementsAre("row 0", "other", "row 2"));
}

TEST_P(AccessibilityListeningTest, AConnectionInUseIsNotClosed) {
  start(program);
  readTexts();
  const std::size_t made = bus.connectionsMade();
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(4500);
  while (std::chrono::steady_clock::now() < end) {
    readTexts();
    g_main_context_iteration(nullptr, FALSE);
  }
  EXPECT_EQ(bus.connectionsMade(), made + 1);
}

}  // namespace
}  // namespace vellora
