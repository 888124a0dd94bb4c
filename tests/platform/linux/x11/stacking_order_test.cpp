#include "platform/linux/x11/stacking_order.h"

#include <ostream>
#include <set>
#include <string_view>

#include <gtest/gtest.h>

namespace vellora {
namespace {

constexpr std::uint32_t panel = 100;

// A stack, the lowest first, a letter a window: M managed, F managed by its override-redirect
// frame, U unmanaged, X unmanaged and not override-redirect, P the panel. A small letter: not
// visible. The windows other than the panel are numbered 1, 2, 3 from below.
std::vector<TopLevel> stack(std::string_view letters) {
  std::vector<TopLevel> windows;
  std::uint32_t number = 0;
  for (const char letter : letters) {
    const bool visible = letter >= 'A' && letter <= 'Z';
    const char kind = visible ? letter : static_cast<char>(letter - 'a' + 'A');
    if (kind == 'P') {
      windows.push_back({panel, visible, false, true});
    } else {
      windows.push_back(
          {++number, visible, kind == 'M' || kind == 'F', kind == 'F' || kind == 'U'});
    }
  }
  return windows;
}

struct StackingCase {
  const char* name;
  const char* letters;
  std::uint32_t base;
  std::optional<Restacking> move;
  std::set<std::uint32_t> givesWay = {};
};

void PrintTo(const StackingCase& each, std::ostream* out) { *out << each.letters; }

class StackingOrderTest : public testing::TestWithParam<StackingCase> {};

TEST_P(StackingOrderTest, ThePanelsPlaceIs) {
  const StackingCase& each = GetParam();
  const auto givesWay = [&](std::uint32_t window) { return each.givesWay.contains(window); };
  EXPECT_EQ(restackingOf(panel, stack(each.letters), each.base, givesWay), each.move);
}

INSTANTIATE_TEST_SUITE_P(
    , StackingOrderTest,
    testing::Values(
        StackingCase{"DirectlyAboveThePlayer", "PM", 1, Restacking{1, 1}},
        StackingCase{"StaysWhereItIs", "MP", 1, std::nullopt},
        StackingCase{"AboveTheTopmostManaged", "PMMM", 1, Restacking{3, 3}},
        StackingCase{"AboveFramesThatAreOverrideRedirect", "PFF", 1, Restacking{2, 2}},
        StackingCase{"BelowAnUnmanagedWindow", "PMU", 1, Restacking{1, 1}},
        StackingCase{"BackUnderAnUnmanagedWindow", "MUP", 1, Restacking{1, 2}},
        StackingCase{"UnderTheLowestOfThem", "MUUP", 1, Restacking{1, 2}},
        StackingCase{"ANewOneOnTopChangesNothing", "MPUU", 1, std::nullopt},
        StackingCase{"OneThatIsNotVisibleIsPassed", "MuMP", 1, std::nullopt},
        StackingCase{"OneThatIsNotVisibleIsNoReasonToMove", "MuP", 1, std::nullopt},
        StackingCase{"AManagedWindowOverALockerIsNotClimbed", "MPUM", 1, std::nullopt},
        StackingCase{"NorWhenThePanelComesFromBelow", "PMUM", 1, Restacking{1, 1}},
        StackingCase{"BackFromAManagedWindowOverALocker", "MUMP", 1, Restacking{1, 2}},
        StackingCase{"WhatLiesUnderThePlayerDoesNotMatter", "UMP", 2, std::nullopt},
        StackingCase{"ThePlayerRaisedOverALockerIsFollowed", "PUM", 2, Restacking{2, 2}},
        StackingCase{"APlayerThatIsNotVisibleCountsForNothing", "UmMUP", 2, Restacking{3, 4}},
        StackingCase{"AnUnknownPlayer", "UMPMU", 0, Restacking{3, 3}},
        StackingCase{"AnUnknownPlayerAndALocker", "MUMP", 0, Restacking{1, 2}},
        StackingCase{"NothingManagedThenWhatWouldBe", "PXUX", 0, Restacking{1, 1}},
        StackingCase{"NothingManagedAndALockerUnderneath", "UXP", 0, std::nullopt},
        StackingCase{"AloneWithALocker", "UP", 0, Restacking{0, 1}},
        StackingCase{"Alone", "P", 0, std::nullopt},
        StackingCase{"AnUnmanagedWindowBesideThePlayerAlone", "MXP", 1, Restacking{1, 2}},
        StackingCase{"AManagedWindowGivenWayTo", "MPMM", 1, Restacking{2, 2}, {3}},
        StackingCase{"ThePlayerIsNeverGivenWayTo", "PM", 1, Restacking{1, 1}, {1}},
        StackingCase{"NoClimbInAChase", "PMU", 1, std::nullopt, {2}},
        StackingCase{"DownFromAWindowThatChases", "MUP", 1, Restacking{0, 2}, {2}},
        StackingCase{"DownFromAnotherInAChase", "MUPU", 1, Restacking{0, 2}, {3}},
        StackingCase{"StaysInAChaseThatIsOver", "MPU", 1, std::nullopt, {2}},
        StackingCase{"TwoThatChaseUnderThePlayer", "UPM", 2, std::nullopt, {1}},
        StackingCase{"TwoThatChaseAlone", "UP", 0, std::nullopt, {1}},
        StackingCase{"AChaserThatIsNotVisible", "PMu", 1, Restacking{1, 1}, {2}},
        StackingCase{"ThePanelIsNotThere", "MU", 1, std::nullopt}),
    [](const auto& each) { return std::string(each.param.name); });

}  // namespace
}  // namespace vellora
