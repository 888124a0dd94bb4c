#include <algorithm>
#include <memory>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "music/lyrics_layout_reader.h"
#include "support/fake_accessibility.h"
#include "support/fake_clock.h"

namespace vellora {
namespace {

using testing::ElementsAre;

constexpr std::int32_t pid = 4711;
constexpr Rect rowFrame{10, 20, 30, 40};

// Trees that no honest player has, and trees larger than one reading may be.
class LyricsLayoutLimitsTest : public testing::Test {
 protected:
  LyricsLayoutLimitsTest() {
    window->title("Lyrics").frame({0, 0, 1000, 700});
    application->windows({window});
    accessibility.applications[pid] = application;
  }

  std::shared_ptr<FakeElement> row(std::string text) {
    auto element = fakeElement("row", &log);
    element->role("AXButton").title(std::move(text)).frame(rowFrame);
    return element;
  }

  AccessibilityElements rows(int count) {
    AccessibilityElements list;
    for (int i = 0; i < count; ++i) list.push_back(row(std::to_string(i)));
    return list;
  }

  MusicLayout read() {
    const auto layout = readMusic(pid, accessibility, clock);
    EXPECT_TRUE(layout.has_value());
    return layout.value_or(MusicLayout());
  }

  long visits() const { return std::ranges::count(log, "row AXRole"); }

  Log log;
  FakeClock clock;
  FakeAccessibility accessibility;
  std::shared_ptr<FakeElement> application = fakeElement();
  std::shared_ptr<FakeElement> window = fakeElement();
};

TEST_F(LyricsLayoutLimitsTest, SevenHundredElementsAreReadTheWindowIncluded) {
  window->children(rows(699));
  EXPECT_EQ(read().rows.size(), 699U);
}

TEST_F(LyricsLayoutLimitsTest, TheSevenHundredAndFirstElementIsNotTouched) {
  window->children(rows(1000));
  const MusicLayout layout = read();
  ASSERT_EQ(layout.rows.size(), 699U);
  EXPECT_EQ(layout.rows.back().text, "698");
  EXPECT_EQ(visits(), 699);
}

TEST_F(LyricsLayoutLimitsTest, TheBudgetIsSharedByAllBranches) {
  auto left = row("left");
  left->children(rows(400));
  auto right = row("right");
  right->children(rows(400));
  window->children({left, right});
  EXPECT_EQ(read().rows.size(), 699U);  // left, its 400, right and 297 of its own
  EXPECT_EQ(visits(), 699);
}

TEST_F(LyricsLayoutLimitsTest, TwentyFourLevelsAreReadTheWindowIncluded) {
  std::shared_ptr<FakeElement> parent = window;
  for (int depth = 1; depth <= 30; ++depth) {
    auto element = row(std::to_string(depth));
    parent->children({element});
    parent = element;
  }
  const MusicLayout layout = read();
  ASSERT_EQ(layout.rows.size(), 23U);
  EXPECT_EQ(layout.rows.back().text, "23");
  EXPECT_EQ(visits(), 23);
}

TEST_F(LyricsLayoutLimitsTest, DeepElementsDoNotUseUpTheBudget) {
  std::shared_ptr<FakeElement> parent = window;
  for (int depth = 1; depth <= 23; ++depth) {
    auto element = row("deep");
    parent->children({element});
    parent = element;
  }
  parent->children(rows(5000));  // at depth 24
  AccessibilityElements list = std::get<AccessibilityElements>(window->values.at("AXChildren"));
  list.push_back(row("after"));
  window->children(list);
  EXPECT_EQ(read().rows.back().text, "after");
}

TEST_F(LyricsLayoutLimitsTest, NoElementIsTouchedFromThreeTenthsOfASecondOn) {
  clock.set(1024);  // so that the sums below are exact
  AccessibilityElements list = rows(10);
  // The fourth row takes until the deadline exactly.
  static_cast<FakeElement&>(*list[3]).onQuery = [this](std::string_view name) {
    if (name == "AXChildren") clock.set(1024 + 0.3);
  };
  window->children(list);
  EXPECT_EQ(read().rows.size(), 4U);
  EXPECT_EQ(visits(), 4);
}

TEST_F(LyricsLayoutLimitsTest, JustBeforeTheDeadlineElementsAreStillRead) {
  AccessibilityElements list = rows(10);
  static_cast<FakeElement&>(*list[3]).onQuery = [this, start = clock.now()](std::string_view) {
    clock.set(start + 0.299);
  };
  window->children(list);
  EXPECT_EQ(read().rows.size(), 10U);
}

TEST_F(LyricsLayoutLimitsTest, AnElementBegunInTimeIsReadWhole) {
  auto slow = row("slow");
  slow->onQuery = [this](std::string_view) { clock.advance(10); };
  window->children({slow, row("late")});
  const MusicLayout layout = read();
  ASSERT_EQ(layout.rows.size(), 1U);
  EXPECT_EQ(layout.rows.front().text, "slow");
}

TEST_F(LyricsLayoutLimitsTest, TimeSpentBeforeTheWalkDoesNotCount) {
  application->onQuery = [this](std::string_view) { clock.advance(5); };
  window->onQuery = [this](std::string_view name) {
    if (name == "AXMinimized" || name == "AXPosition" || name == "AXSize") clock.advance(5);
  };
  window->children(rows(3));
  EXPECT_EQ(read().rows.size(), 3U);
}

TEST_F(LyricsLayoutLimitsTest, AWholeReadingIsNotCut) {
  window->children(rows(699));
  const ReadingCut cut = read().cut;
  EXPECT_FALSE(cut.byElements || cut.byTime || cut.byDepth);
  EXPECT_FALSE(cut);
}

TEST_F(LyricsLayoutLimitsTest, AReadingSaysThatElementsWereLeftOut) {
  window->children(rows(700));
  const ReadingCut cut = read().cut;
  EXPECT_TRUE(cut.byElements);
  EXPECT_FALSE(cut.byTime || cut.byDepth);
  EXPECT_TRUE(cut);
}

TEST_F(LyricsLayoutLimitsTest, AReadingSaysThatItsTimeWasOver) {
  AccessibilityElements list = rows(2);
  window->children(list);
  for (const auto& slow : list) {  // the second one is asked whole, but perhaps in vain
    static_cast<FakeElement&>(*slow).onQuery = [this](std::string_view) { clock.advance(10); };
    const ReadingCut cut = read().cut;
    EXPECT_TRUE(cut.byTime);
    EXPECT_FALSE(cut.byElements || cut.byDepth);
    static_cast<FakeElement&>(*slow).onQuery = {};
  }
}

TEST_F(LyricsLayoutLimitsTest, AReadingSaysThatLevelsWereLeftOut) {
  std::shared_ptr<FakeElement> parent = window;
  for (int depth = 1; depth <= 24; ++depth) {
    EXPECT_FALSE(read().cut) << depth;
    auto element = row("deep");
    parent->children({element});
    parent = element;
  }
  const ReadingCut cut = read().cut;
  EXPECT_TRUE(cut.byDepth);
  EXPECT_FALSE(cut.byElements || cut.byTime);
}

TEST_F(LyricsLayoutLimitsTest, ACycleEnds) {
  // Weak, so that the tree does not keep itself alive.
  const std::weak_ptr<FakeElement> self = window;
  auto child = row("child");
  child->answer = [self](std::string_view name) -> AttributeValue {
    if (name == "AXRole") return std::string("AXButton");
    if (name == "AXTitle") return std::string("again");
    if (name == "AXPosition") return Point{1, 2};
    if (name == "AXSize") return Size{3, 4};
    if (name == "AXChildren") return AccessibilityElements{self.lock(), self.lock()};
    return {};
  };
  window->children({child});
  read();
  EXPECT_LE(visits(), 699);
  EXPECT_GE(visits(), 300);
}

TEST_F(LyricsLayoutLimitsTest, AChildListOfAMillionEnds) {
  const auto one = row("one");
  window->children(AccessibilityElements(1'000'000, one));
  EXPECT_EQ(read().rows.size(), 699U);
}

TEST_F(LyricsLayoutLimitsTest, MissingElementsInAListArePassedOver) {
  window->children({nullptr, row("first"), nullptr, row("second"), nullptr});
  const MusicLayout layout = read();
  ASSERT_EQ(layout.rows.size(), 2U);
  EXPECT_EQ(layout.rows.back().text, "second");
}

TEST_F(LyricsLayoutLimitsTest, ElementsWhoseObjectIsGoneAreEmpty) {
  window->children({fakeElement("gone"), row("there")});
  EXPECT_EQ(read().rows.size(), 1U);
}

TEST_F(LyricsLayoutLimitsTest, AnswersOfTheWrongKindCountAsMissing) {
  auto odd = row("odd");
  odd->set("AXRole", AccessibilityElements{row("x")}).set("AXTitle", Point{1, 2});
  odd->set("AXIdentifier", Size{1, 2}).set("AXDescription", true);
  odd->set("AXChildren", std::string("children"));
  window->children({odd, row("even")});
  const MusicLayout layout = read();
  ASSERT_EQ(layout.rows.size(), 1U);
  EXPECT_EQ(layout.rows.front().text, "even");
}

}  // namespace
}  // namespace vellora
