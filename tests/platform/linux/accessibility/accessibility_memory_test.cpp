// What one reading leaves to the next: fewer questions, and never another result.
#include <random>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/linux/accessibility/memory_fixture.h"

namespace vellora {
namespace {

using testing::ElementsAre;

class AccessibilityMemoryTest : public MemoryFixture, public testing::WithParamInterface<OwnBus> {
 protected:
  AccessibilityMemoryTest() { ownBus = GetParam(); }
};

INSTANTIATE_TEST_SUITE_P(Ways, AccessibilityMemoryTest,
                         testing::Values(OwnBus::missing, OwnBus::open), nameOfWay);

constexpr int stateAndFrames = 5;  // the window's state, its frame and those of three rows

TEST_P(AccessibilityMemoryTest, LaterReadingsAskForStatesAndFramesOnly) {
  start(program);
  EXPECT_GT(questions(), 20);
  const CallCounts& counts = player->counts();
  const int all = counts.getAll + counts.role + counts.children + counts.get;
  for (int i = 0; i < 5; ++i) EXPECT_EQ(questions(), stateAndFrames);
  EXPECT_EQ(counts.getAll + counts.role + counts.children + counts.get, all);
}

TEST_P(AccessibilityMemoryTest, ASignalledChangeIsSeenByTheNextReading) {
  start(program);
  EXPECT_THAT(readTexts(), ElementsAre("row 0", "row 1", "row 2"));
  change(
      rows[1], [](FakeAccessible& row) { row.name = "other"; }, nameChanged);
  EXPECT_THAT(readTexts(), ElementsAre("row 0", "other", "row 2"));
  change(
      rows[1], [](FakeAccessible& row) { row.name = ""; }, nameChanged);
  change(
      rows[1], [](FakeAccessible& row) { row.description = "told"; }, "accessible-description");
  EXPECT_THAT(readTexts(), ElementsAre("row 0", "told", "row 2"));
  change(
      rows[2], [](FakeAccessible& row) { row.role = FakeRole::label; }, "accessible-role");
  EXPECT_THAT(texts(readRows(2)), ElementsAre("row 0", "told"));
  change(
      title, [](FakeAccessible& label) { label.identifier = ""; }, "accessible-id");
  EXPECT_EQ(readRows(2).title, "");
}

TEST_P(AccessibilityMemoryTest, AChangedObjectIsAskedAgainWithThoseAroundItAndNoOthers) {
  start(program);
  readTexts();
  readTexts();
  change(
      labels[1], [](FakeAccessible& label) { label.name = "other"; }, nameChanged);
  const int getAll = player->counts().getAll;
  const int role = player->counts().role;
  const int children = player->counts().children;
  readTexts();
  EXPECT_EQ(player->counts().getAll - getAll, 4);  // label, row, box, window
  EXPECT_EQ(player->counts().role - role, 1);
  EXPECT_EQ(player->counts().children - children, 0);
}

TEST_P(AccessibilityMemoryTest, AButtonThatIsNamedAfterItsLabelIsReadAgainWhenTheLabelChanges) {
  start(program);
  readTexts();
  change(rows[1], [](FakeAccessible& row) { row.name = "as its label"; });
  change(
      labels[1], [](FakeAccessible& label) { label.name = "as its label"; }, nameChanged);
  EXPECT_THAT(readTexts(), ElementsAre("row 0", "as its label", "row 2"));
}

TEST_P(AccessibilityMemoryTest, AChangedListIsSeenByTheNextReading) {
  start(program);
  readTexts();
  change(
      box, [&](FakeAccessible& list) { list.children.push_back(spare); }, childrenChanged);
  EXPECT_THAT(texts(readRows(4)), ElementsAre("row 0", "row 1", "row 2", "spare"));
  change(
      box,
      [&](FakeAccessible& list) {
        list.children = {spare, rows[1]};
      },
      childrenChanged);
  EXPECT_THAT(texts(readRows(2)), ElementsAre("row 1", "spare"));
}

TEST_P(AccessibilityMemoryTest, AnotherWindowIsSeenByTheNextReading) {
  const auto second = add(program, 0, program.objects[1]);
  object(second).children = {spare};
  object(0).children = {1};
  start(program);
  readTexts();
  change(
      0, [&](FakeAccessible& root) { root.children = {second}; }, childrenChanged);
  EXPECT_THAT(texts(readRows(1)), ElementsAre("spare"));
}

TEST_P(AccessibilityMemoryTest, AChangeOfAnObjectThatWasNotMetPutsEverythingInDoubt) {
  start(program);
  readTexts();
  const int whole = questions() + 3 * 6;  // three questions for most of the objects
  change(
      spare, [](FakeAccessible& row) { row.name = "of another place"; }, nameChanged);
  EXPECT_GT(questions(), whole);
}

TEST_P(AccessibilityMemoryTest, WhatAProgramDoesNotSignalIsSeenWithinAWhile) {
  accessibility = makeLinuxAccessibility();
  start(program);
  readTexts();
  change(rows[1], [](FakeAccessible& row) { row.name = "other"; });
  EXPECT_TRUE(eventually([&] { return readTexts()[1] == "other"; }));
}

TEST_P(AccessibilityMemoryTest, OfAProgramThatTellsNobodyNothingIsRemembered) {
  program.tellsNobody = true;
  start(program);
  readTexts();
  change(rows[1], [](FakeAccessible& row) { row.name = "other"; });
  EXPECT_THAT(readTexts(), ElementsAre("row 0", "other", "row 2"));
}

TEST_P(AccessibilityMemoryTest, OfOtherToolkitsNothingIsRemembered) {
  for (const char* toolkit : {"GTK", "Qt", "Chromium", ""}) {
    program.toolkit = toolkit;
    start(program);
    readTexts();
    const std::string other = std::string("other than ") + toolkit;
    player->change(rows[1], row(other, 10));
    EXPECT_THAT(readTexts(), ElementsAre("row 0", other, "row 2")) << toolkit;
    EXPECT_EQ(player->counts().busAddress, 0) << toolkit;
  }
}

TEST_P(AccessibilityMemoryTest, WhatABusRefusesToTellIsNotRemembered) {
  const PrivateBus strict("<limit name=\"max_match_rules_per_connection\">4</limit>");
  const auto itsServices = startServices(strict, {true, strict.address()});
  FakeProgramProcess itsPlayer(strict, program);
  const auto reader = makeLinuxAccessibility(std::chrono::hours(1));
  std::optional<MusicLayout> layout;
  const auto secondText = [&] {
    EXPECT_TRUE(eventually([&] {
      layout = readMusic(itsPlayer.pid(), *reader, clock);
      return layout && layout->rows.size() == 3;
    }));
    return layout->rows[1].text;
  };
  EXPECT_EQ(secondText(), "row 1");
  itsPlayer.change(rows[1], row("other", 10));
  EXPECT_EQ(secondText(), "other");
}

// GTK's tree views signal nothing of what is in them.
TEST_P(AccessibilityMemoryTest, WhatIsInTablesAndTreesIsAskedEachTime) {
  for (const std::uint32_t role : {55U, 65U, 66U}) {  // AtspiRole: table, tree, tree table
    object(box).role = role;
    start(program);
    readTexts();
    player->change(rows[1], row("other", 10));
    EXPECT_THAT(readTexts(), ElementsAre("row 0", "other", "row 2")) << role;
    FakeAccessible shorter = object(box);
    shorter.children = {rows[0], spare};
    player->change(box, shorter);
    EXPECT_THAT(texts(readRows(2)), ElementsAre("row 0", "spare")) << role;
  }
}

// GTK's list boxes do not signal which rows they have; the rows signal what they are.
TEST_P(AccessibilityMemoryTest, AListBoxIsAskedEachTimeWhichRowsItHasAndTheRowsAreRemembered) {
  object(box).role = 98;  // AtspiRole: list box
  start(program);
  readTexts();
  change(rows[1], [](FakeAccessible& row) { row.name = "other"; });
  EXPECT_THAT(readTexts(), ElementsAre("row 0", "row 1", "row 2"));
  player->change(rows[1], object(rows[1]), nameChanged);
  EXPECT_THAT(readTexts(), ElementsAre("row 0", "other", "row 2"));
  change(box, [&](FakeAccessible& list) { list.children = {rows[1], spare}; });
  EXPECT_THAT(texts(readRows(2)), ElementsAre("other", "spare"));
}

TEST_P(AccessibilityMemoryTest, ObjectsOfAnotherProgramAreAskedEachTime) {
  FakeProgramProcess other(bus, program);
  object(box).busOfFirstChild = other.busName();
  start(program);
  readTexts();
  other.change(rows[0], row("other", 0));
  EXPECT_THAT(readTexts(), ElementsAre("other", "row 1", "row 2"));
}

TEST_P(AccessibilityMemoryTest, WhatWasNotAnsweredIsAskedAgain) {
  object(rows[1]).answersWrongTypes = true;
  start(program);
  EXPECT_THAT(texts(readRows(2)), ElementsAre("row 0", "row 2"));
  change(rows[1], [](FakeAccessible& row) { row.answersWrongTypes = false; });
  EXPECT_THAT(readTexts(), ElementsAre("row 0", "row 1", "row 2"));
}

TEST_P(AccessibilityMemoryTest, AListOfWhichOnlyAPartWasAnsweredIsAskedAgain) {
  object(box).children.clear();
  object(box).copies = 1000;
  object(box).copyOf = spare;
  program.stopsAfter = 350;  // among the questions for the children, one by one
  start(program);
  read();
  wake();
  readRows(697, patient);  // 700 elements: window, title, box and its rows but the last ones
}

TEST_P(AccessibilityMemoryTest, AProgramThatWasSlowToTellIsRememberedLater) {
  accessibility = makeLinuxAccessibility();
  program.stopsAfter = 1;  // the question before the one that it does not answer in time
  start(program);
  read();
  wake();
  EXPECT_TRUE(eventually([&] { return questions() == stateAndFrames; }));
}

TEST_P(AccessibilityMemoryTest, AProgramThatLeavesTheRegistryIsNoLongerReadAfterAWhile) {
  accessibility = makeLinuxAccessibility();
  start(program);
  readTexts();
  services.reset();
  services = startServices(bus, {true, bus.address()});  // and knows of no program
  EXPECT_TRUE(eventually([&] { return !read().has_value(); }));
}

TEST_P(AccessibilityMemoryTest, AProgramInThePlaceOfAnotherIsReadAfresh) {
  start(program);
  readTexts();
  const pid_t gone = player->pid();
  player.reset();
  EXPECT_FALSE(readMusic(gone, *accessibility, clock).has_value());
  object(rows[1]).name = "after the restart";
  start(program);
  EXPECT_THAT(readTexts(), ElementsAre("row 0", "after the restart", "row 2"));
}

TEST_P(AccessibilityMemoryTest, SwitchingAccessibilityOffEndsWhatIsRemembered) {
  start(program);
  readTexts();
  setEnabled(bus, false);
  EXPECT_FALSE(read().has_value());
  setEnabled(bus, true);
  readTexts();
}

// Random changes, each signalled as GTK would, and after each the reading that remembers beside one
// that cannot.
TEST_P(AccessibilityMemoryTest, ReadingsAfterAnyChangesAreThoseWithoutMemory) {
  std::mt19937 random(7);
  const auto below = [&](std::size_t limit) { return static_cast<std::size_t>(random() % limit); };
  const auto forgetful = makeLinuxAccessibility(std::chrono::seconds(0));
  start(program);
  readTexts();
  for (int i = 0; i < 150; ++i) {
    const std::string text = "text " + std::to_string(below(20));
    const std::size_t any = 2 + below(program.objects.size() - 2);  // not the window
    switch (below(5)) {
      case 0:
        change(
            any, [&](FakeAccessible& it) { it.name = text; }, nameChanged);
        break;
      case 1:
        change(
            any, [&](FakeAccessible& it) { it.description = text; }, "accessible-description");
        break;
      case 2:
        change(
            rows[below(3)],
            [&](FakeAccessible& it) { it.role = it.role == FakeRole::button ? 39 : 43; },
            "accessible-role");
        break;
      case 3:
        change(
            box,
            [&](FakeAccessible& it) {
              it.children = {rows[below(3)], spare};
              if (below(2) > 0) it.children.push_back(rows[below(3)]);
            },
            childrenChanged);
        break;
      default:
        change(
            title, [&](FakeAccessible& it) { it.name = text; }, nameChanged);
    }
    const auto same = [&] {
      const auto remembering = read();
      const auto plain = readMusic(player->pid(), *forgetful, clock);
      if (!remembering || !plain) return false;
      return texts(*remembering) == texts(*plain) && remembering->title == plain->title;
    };
    ASSERT_TRUE(eventually(same)) << i;  // one of the two may have been cut short
  }
  EXPECT_EQ(player->counts().direct > 0, GetParam() == OwnBus::open);
}

}  // namespace
}  // namespace vellora
