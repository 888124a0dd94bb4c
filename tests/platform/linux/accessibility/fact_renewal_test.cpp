// What a program changes without a signal: how it is seen all the same, and what that costs.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <random>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/linux/accessibility/memory_fixture.h"

namespace vellora {
namespace {

using testing::ElementsAre;

class FactRenewalTest : public MemoryFixture, public testing::WithParamInterface<OwnBus> {
 protected:
  FactRenewalTest() {
    ownBus = GetParam();
    accessibility = makeLinuxAccessibility(longest);
  }

  void begin() {
    start(program);
    readTexts();
  }

  // Whether a reading sees so many rows with these texts in good time.
  bool sees(const std::vector<std::string>& expected) {
    return eventually([&] {
      const auto layout = read();
      return layout && texts(*layout) == expected;
    });
  }

  static constexpr std::chrono::seconds longest{1};
  static constexpr std::uint32_t unknown = 67;  // AtspiRole
};

INSTANTIATE_TEST_SUITE_P(Ways, FactRenewalTest, testing::Values(OwnBus::missing, OwnBus::open),
                         nameOfWay);

TEST_P(FactRenewalTest, AnUnsignalledChangeIsSeenWithoutAReadingThatAsksForEverything) {
  begin();
  const auto isSeenWithFewQuestions = [&, i = 0]() mutable {
    const std::string text = "text " + std::to_string(++i);
    change(rows[1], [&](FakeAccessible& row) { row.name = text; });
    int most = 0;
    EXPECT_TRUE(eventually([&] {
      const int before = player->counts().all;
      const auto layout = read();
      most = std::max(most, player->counts().all - before);
      return layout && texts(*layout) == std::vector<std::string>{"row 0", text, "row 2"};
    }));
    return most <= 15;  // of 30: those of each reading, the row and what it is in, and some more
  };
  // A machine that stands still for long enough has everything forgotten.
  EXPECT_TRUE(eventually(isSeenWithFewQuestions));
}

TEST_P(FactRenewalTest, EachObjectIsAskedAboutOnceInTheTimeThatItIsBelieved) {
  begin();
  const int before = player->counts().getAll;
  const double passed = seconds([&] {
    const auto end = std::chrono::steady_clock::now() + 3 * longest;
    while (std::chrono::steady_clock::now() < end) read();
  });
  const int asked = player->counts().getAll - before;
  const auto objects = static_cast<double>(program.objects.size() - 1);  // all but the spare row
  EXPECT_GE(asked, objects * 2);
  EXPECT_LE(asked, objects * (passed / 0.8 + 1));
}

TEST_P(FactRenewalTest, WhatIsKnownOfTheProgramsIsAskedWithThem) {
  begin();
  const FakeProgramProcess other(bus, program);
  readTexts();
  services.reset();
  EXPECT_TRUE(eventually([&] { return !read().has_value(); })) << "nobody says who is there";
  services = startServices(bus, {true, bus.address()});
  start(program);
  EXPECT_TRUE(sees({"row 0", "row 1", "row 2"}));
}

TEST_P(FactRenewalTest, AnUnsignalledListIsSeen) {
  begin();
  change(box, [&](FakeAccessible& list) { list.children = {rows[2], spare}; });
  EXPECT_TRUE(sees({"row 2", "spare"}));
  change(box, [&](FakeAccessible& list) { list.children = {rows[0], spare}; });  // as many
  EXPECT_TRUE(sees({"row 0", "spare"}));
  change(box, [&](FakeAccessible& list) { list.children.clear(); });
  EXPECT_TRUE(sees({}));
}

// The list of an object that had no children is not asked again, the number of its children is.
TEST_P(FactRenewalTest, AnObjectThatHadNothingInsideIsSeenToHave) {
  object(box).children.clear();
  start(program);
  readRows(0);
  change(box, [&](FakeAccessible& list) { list.children = {rows[0], spare}; });
  EXPECT_TRUE(sees({"row 0", "spare"}));
}

TEST_P(FactRenewalTest, ARoleThatWasUnknownIsSeenWhenItIsKnown) {
  object(rows[1]).role = unknown;
  start(program);
  EXPECT_TRUE(sees({"row 0", "row 2"}));
  change(rows[1], [](FakeAccessible& row) { row.role = FakeRole::button; });
  EXPECT_TRUE(sees({"row 0", "row 1", "row 2"}));
}

TEST_P(FactRenewalTest, AnObjectThatAnswersNoLongerIsSeenNoLonger) {
  begin();
  change(rows[1], [](FakeAccessible& row) { row.answersWrongTypes = true; });
  EXPECT_TRUE(sees({"row 0", "row 2"}));
  change(rows[1], [](FakeAccessible& row) { row.answersWrongTypes = false; });
  EXPECT_TRUE(sees({"row 0", "row 1", "row 2"}));
}

// Random changes, signalled or not, and after each the reading that remembers beside one that
// cannot.
TEST_P(FactRenewalTest, ReadingsComeToWhatIsThere) {
  std::mt19937 random(11);
  const auto below = [&](std::size_t limit) { return static_cast<std::size_t>(random() % limit); };
  const auto forgetful = makeLinuxAccessibility(std::chrono::seconds(0));
  begin();
  for (int i = 0; i < 25; ++i) {
    for (std::size_t changes = 1 + below(3); changes > 0; --changes) {
      const std::string text = "text " + std::to_string(below(20));
      const std::size_t any = 2 + below(program.objects.size() - 2);  // not the window
      if (below(3) == 0) {
        change(box, [&](FakeAccessible& it) { it.children = {rows[below(3)], spare}; });
      } else {
        change(
            any, [&](FakeAccessible& it) { it.name = text; }, below(2) == 0 ? nameChanged : "");
      }
    }
    const auto same = [&] {
      const auto remembering = read();
      const auto plain = readMusic(player->pid(), *forgetful, clock);
      if (!remembering || !plain) return false;
      return texts(*remembering) == texts(*plain) && remembering->title == plain->title;
    };
    ASSERT_TRUE(eventually(same)) << i;
  }
}

}  // namespace
}  // namespace vellora
