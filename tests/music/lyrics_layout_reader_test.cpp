#include "music/lyrics_layout_reader.h"

#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/fake_accessibility.h"
#include "support/fake_clock.h"

namespace vellora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::int32_t pid = 4711;
constexpr Rect windowFrame{100, 50, 1000, 700};
constexpr char nowPlaying[] = "Music.nowPlaying.title-Music.nowPlaying.subtitle";

std::shared_ptr<FakeElement> button(std::string title, Rect rect) {
  auto element = fakeElement();
  element->role("AXButton").title(std::move(title)).frame(rect);
  return element;
}

class LyricsLayoutReaderTest : public testing::Test {
 protected:
  LyricsLayoutReaderTest() {
    window->role("AXWindow").title("Music").frame(windowFrame);
    application->windows({window});
    accessibility.applications[pid] = application;
  }

  std::optional<MusicLayout> read() { return readMusic(pid, accessibility, clock); }

  // The reading of a window whose only child is a scroll area labelled "Lyrics" with these
  // children.
  MusicLayout readLyrics(AccessibilityElements rows) {
    lyrics->role("AXScrollArea").description("Lyrics").frame({600, 100, 400, 600});
    lyrics->children(std::move(rows));
    window->children({lyrics});
    const auto layout = read();
    EXPECT_TRUE(layout.has_value());
    return layout.value_or(MusicLayout());
  }

  static std::vector<std::string> texts(const MusicLayout& layout) {
    std::vector<std::string> result;
    for (const MusicRow& row : layout.rows) result.push_back(row.text);
    return result;
  }

  Log log;
  FakeClock clock;
  FakeAccessibility accessibility;
  std::shared_ptr<FakeElement> application = fakeElement("application", &log);
  std::shared_ptr<FakeElement> window = fakeElement("window", &log);
  std::shared_ptr<FakeElement> lyrics = fakeElement("lyrics", &log);
};

// --- The window -------------------------------------------------------------------------------

TEST_F(LyricsLayoutReaderTest, ProcessThatIsNotThereGivesNothing) {
  EXPECT_FALSE(readMusic(pid + 1, accessibility, clock).has_value());
}

TEST_F(LyricsLayoutReaderTest, WindowsThatCannotBeReadGiveNothing) {
  for (const AttributeValue& answer :
       {AttributeValue(), AttributeValue(std::string("window")), AttributeValue(true),
        AttributeValue(AccessibilityElements()), AttributeValue(AccessibilityElements{nullptr})}) {
    application->set("AXWindows", answer);
    EXPECT_FALSE(read().has_value());
  }
  EXPECT_THAT(log, testing::Each("application AXWindows"));
}

TEST_F(LyricsLayoutReaderTest, QueriesWaitEightyMilliseconds) {
  ASSERT_TRUE(read().has_value());
  EXPECT_EQ(accessibility.lastMessagingTimeout, 0.08F);
}

TEST_F(LyricsLayoutReaderTest, FirstWindowMinimisedGivesNothingEvenWithAnotherOpen) {
  auto other = fakeElement("other", &log);
  other->frame(windowFrame);
  application->windows({window, other});
  window->set("AXMinimized", true);
  EXPECT_FALSE(read().has_value());
  EXPECT_THAT(log, ElementsAre("application AXWindows", "window AXMinimized"));
}

TEST_F(LyricsLayoutReaderTest, OnlyTheFirstWindowIsRead) {
  auto other = fakeElement("other", &log);
  other->frame({0, 0, 10, 10});
  application->windows({window, other});
  const auto layout = read();
  ASSERT_TRUE(layout.has_value());
  EXPECT_EQ(layout->window, windowFrame);
  EXPECT_THAT(log, testing::Not(testing::Contains(testing::StartsWith("other"))));
}

TEST_F(LyricsLayoutReaderTest, MinimisedThatIsNoTrueFlagCountsAsOpen) {
  for (const AttributeValue& answer :
       {AttributeValue(), AttributeValue(false), AttributeValue(std::string("true"))}) {
    window->set("AXMinimized", answer);
    EXPECT_TRUE(read().has_value());
  }
}

TEST_F(LyricsLayoutReaderTest, WindowOfNoSizeGivesNothing) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (const Size size : {Size{0, 0}, Size{0, 10}, Size{10, 0}, Size{-10, 10}, Size{10, -10},
                          Size{nan, 10}, Size{10, nan}}) {
    window->set("AXSize", size);
    EXPECT_FALSE(read().has_value()) << size.width << " × " << size.height;
  }
}

TEST_F(LyricsLayoutReaderTest, WindowWithoutPositionOrSizeGivesNothing) {
  for (const char* name : {"AXPosition", "AXSize"}) {
    for (const AttributeValue& answer :
         {AttributeValue(), AttributeValue(std::string("10")), AttributeValue(true)}) {
      window->frame(windowFrame).set(name, answer);
      EXPECT_FALSE(read().has_value()) << name;
    }
  }
  window->set("AXPosition", Size{1, 2}).set("AXSize", Size{1, 2});
  EXPECT_FALSE(read().has_value());
  window->set("AXPosition", Point{1, 2}).set("AXSize", Point{1, 2});
  EXPECT_FALSE(read().has_value());
}

// --- Without lyrics ---------------------------------------------------------------------------

TEST_F(LyricsLayoutReaderTest, WithoutLyricsViewOnlyWindowAndTitleAreFound) {
  auto playing = fakeElement();
  playing->identifier(nowPlaying).description("Song, Artist");
  auto area = fakeElement();
  area->role("AXScrollArea").frame({0, 0, 500, 500}).children({button("Play", {1, 2, 3, 4})});
  window->children({playing, area});
  const auto layout = read();
  ASSERT_TRUE(layout.has_value());
  EXPECT_EQ(layout->window, windowFrame);
  EXPECT_EQ(layout->viewport, Rect());
  EXPECT_EQ(layout->title, "Song, Artist");
  EXPECT_THAT(layout->rows, IsEmpty());
}

TEST_F(LyricsLayoutReaderTest, BareWindowGivesALayoutWithDefaults) {
  const auto layout = read();
  ASSERT_TRUE(layout.has_value());
  EXPECT_EQ(layout->viewport, Rect());
  EXPECT_EQ(layout->title, "");
  EXPECT_THAT(layout->rows, IsEmpty());
}

TEST_F(LyricsLayoutReaderTest, LabelIsComparedExactly) {
  for (const char* label : {"lyrics", "Lyrics ", "The Lyrics", "LYRICS", ""}) {
    auto area = fakeElement();
    area->role("AXScrollArea").title(label).description(label).frame({200, 100, 100, 100});
    area->children({button("row", {210, 110, 50, 20})});
    window->children({area});
    const auto layout = read();
    ASSERT_TRUE(layout.has_value());
    EXPECT_THAT(layout->rows, IsEmpty()) << label;
    EXPECT_EQ(layout->viewport, Rect()) << label;
  }
}

// --- The title --------------------------------------------------------------------------------

TEST_F(LyricsLayoutReaderTest, TitleElementPrefersItsDescription) {
  auto playing = fakeElement();
  playing->identifier(nowPlaying).description("from description").title("from title");
  window->children({playing});
  EXPECT_EQ(read()->title, "from description");
  playing->description("");
  EXPECT_EQ(read()->title, "from title");
  playing->title("");
  EXPECT_EQ(read()->title, "");
}

TEST_F(LyricsLayoutReaderTest, LastTitleElementInWalkOrderWinsEvenWhenEmpty) {
  auto first = fakeElement();
  auto inner = fakeElement();
  auto last = fakeElement();
  first->identifier(nowPlaying).title("first").children({inner});
  inner->identifier(nowPlaying).title("inner");
  last->identifier(nowPlaying);
  window->children({first});
  EXPECT_EQ(read()->title, "inner");
  window->children({first, last});
  EXPECT_EQ(read()->title, "");
}

TEST_F(LyricsLayoutReaderTest, TitleElementInsideTheLyricsCounts) {
  auto row = button("Song, Artist", {610, 110, 50, 20});
  row->identifier(nowPlaying);
  const MusicLayout layout = readLyrics({row});
  EXPECT_EQ(layout.title, "Song, Artist");
  EXPECT_THAT(texts(layout), ElementsAre("Song, Artist"));
}

TEST_F(LyricsLayoutReaderTest, IdentifierIsComparedWhole) {
  auto playing = fakeElement();
  playing->identifier("Music.nowPlaying.title").title("wrong");
  window->children({playing});
  EXPECT_EQ(read()->title, "");
}

// --- Rows -------------------------------------------------------------------------------------

TEST_F(LyricsLayoutReaderTest, RowPrefersItsTitle) {
  auto row = button("from title", {610, 110, 50, 20});
  row->description("from description");
  EXPECT_THAT(texts(readLyrics({row})), ElementsAre("from title"));
}

TEST_F(LyricsLayoutReaderTest, LinesWithoutTitleCarryTheirDescription) {
  auto absent = fakeElement();
  absent->role("AXButton").description("one").frame({610, 110, 50, 20});
  auto empty = button("", {610, 140, 50, 20});
  empty->description("two");
  auto wrongType = button("", {610, 170, 50, 20});
  wrongType->set("AXTitle", true).description("three");
  EXPECT_THAT(texts(readLyrics({absent, empty, wrongType})), ElementsAre("one", "two", "three"));
}

TEST_F(LyricsLayoutReaderTest, ButtonWithoutFrameIsNoRowButItsChildrenAreWalked) {
  auto outer = fakeElement();
  outer->role("AXButton").title("outer").children({button("inner", {610, 110, 50, 20})});
  EXPECT_THAT(texts(readLyrics({outer})), ElementsAre("inner"));
  outer->frame({610, 100, 50, 0});
  EXPECT_THAT(texts(readLyrics({outer})), ElementsAre("inner"));
}

TEST_F(LyricsLayoutReaderTest, ButtonWithoutTextIsNoRowButItsChildrenAreWalked) {
  auto outer = button("", {610, 100, 50, 50});
  outer->description("").children({button("inner", {610, 110, 50, 20})});
  EXPECT_THAT(texts(readLyrics({outer})), ElementsAre("inner"));
}

TEST_F(LyricsLayoutReaderTest, OnlyButtonsAreRows) {
  auto label = button("label", {610, 110, 50, 20});
  label->role("AXStaticText");
  EXPECT_THAT(texts(readLyrics({label, button("row", {610, 140, 50, 20})})), ElementsAre("row"));
}

TEST_F(LyricsLayoutReaderTest, RowsComeTopFirstAndTiesKeepWalkOrder) {
  const MusicLayout layout =
      readLyrics({button("c", {900, 300, 50, 20}), button("a2", {700, 100, 50, 20}),
                  button("a1", {610, 100, 50, 20}), button("b", {610, 200, 50, 20}),
                  button("above", {610, -2147483648.0, 50, 20}), button("a3", {650, 100, 50, 20})});
  EXPECT_THAT(texts(layout), ElementsAre("above", "a2", "a1", "a3", "b", "c"));
}

TEST_F(LyricsLayoutReaderTest, ManyRowsWithEqualTopsKeepWalkOrder) {
  AccessibilityElements rows;
  std::vector<std::string> expected;
  for (int i = 0; i < 300; ++i)
    rows.push_back(button(std::to_string(i), {610, 300.0 - i % 3, 5, 5}));
  for (int start : {2, 1, 0}) {
    for (int i = start; i < 300; i += 3) expected.push_back(std::to_string(i));
  }
  EXPECT_EQ(texts(readLyrics(rows)), expected);
}

TEST_F(LyricsLayoutReaderTest, RowsAreNeitherClippedNorMergedNorFiltered) {
  const Rect far{-5000, 90000, 50, 20};
  const MusicLayout layout = readLyrics(
      {button("same", {610, 110, 50, 20}), button("same", {610, 110, 50, 20}), button(" ", far)});
  EXPECT_THAT(texts(layout), ElementsAre("same", "same", " "));
  EXPECT_EQ(layout.rows.back().frame, far);
}

TEST_F(LyricsLayoutReaderTest, ARowComesBeforeTheRowsInsideIt) {
  auto outer = button("outer", {610, 100, 50, 50});
  outer->children({button("inner", {610, 100, 50, 20})});
  EXPECT_THAT(texts(readLyrics({outer})), ElementsAre("outer", "inner"));
}

TEST_F(LyricsLayoutReaderTest, TopThatIsNotANumberGoesLast) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_THAT(texts(readLyrics(
                  {button("nan", {610, nan, 50, 20}), button("low", {610, 400, 50, 20}),
                   button("nan too", {610, nan, 50, 20}), button("high", {610, 100, 50, 20})})),
              ElementsAre("high", "low", "nan", "nan too"));
}

// --- The viewport -----------------------------------------------------------------------------

TEST_F(LyricsLayoutReaderTest, ScrollAreaLabelledLyricsSetsTheViewportItself) {
  for (const char* name : {"AXTitle", "AXDescription"}) {
    auto area = fakeElement();
    area->role("AXScrollArea").set(name, std::string("Lyrics")).frame({200, 100, 300, 400});
    window->children({area});
    EXPECT_EQ(read()->viewport, (Rect{200, 100, 300, 400})) << name;
  }
}

TEST_F(LyricsLayoutReaderTest, ButtonLabelledLyricsIsARowItself) {
  window->children({button("Lyrics", {200, 100, 300, 40})});
  EXPECT_THAT(texts(*read()), ElementsAre("Lyrics"));
}

TEST_F(LyricsLayoutReaderTest, ViewportIsClippedToTheWindow) {
  readLyrics({});
  lyrics->frame({900, 0, 400, 100});
  EXPECT_EQ(read()->viewport, (Rect{900, 50, 200, 50}));
}

TEST_F(LyricsLayoutReaderTest, ScrollAreaOutsideTheWindowGivesTheNullViewport) {
  readLyrics({});
  lyrics->frame({5000, 5000, 400, 100});
  EXPECT_TRUE(read()->viewport.isNull());
}

TEST_F(LyricsLayoutReaderTest, LastScrollAreaInWalkOrderWinsAndOneWithoutFrameChangesNothing) {
  auto inner = fakeElement();
  inner->role("AXScrollArea").frame({610, 110, 100, 100});
  auto frameless = fakeElement();
  frameless->role("AXScrollArea");
  EXPECT_EQ(readLyrics({inner, frameless}).viewport, (Rect{610, 110, 100, 100}));
}

TEST_F(LyricsLayoutReaderTest, LyricsWithoutScrollAreaLeaveTheViewportZero) {
  auto group = fakeElement();
  group->description("Lyrics").frame({600, 100, 10, 10});
  group->children({button("row", {610, 110, 50, 20})});
  window->children({group});
  const auto layout = read();
  EXPECT_EQ(layout->viewport, Rect());
  EXPECT_THAT(texts(*layout), ElementsAre("row"));
}

TEST_F(LyricsLayoutReaderTest, LyricsEndWithTheirSubtree) {
  readLyrics({button("row", {610, 110, 50, 20})});
  auto area = fakeElement();
  area->role("AXScrollArea").frame({200, 100, 300, 400});
  window->children({lyrics, area, button("Play", {210, 110, 50, 20})});
  const auto layout = read();
  EXPECT_EQ(layout->viewport, (Rect{600, 100, 400, 600}));
  EXPECT_THAT(texts(*layout), ElementsAre("row"));
}

// --- Which queries, in which order ------------------------------------------------------------

TEST_F(LyricsLayoutReaderTest, QueriesComeInTheirOrderAndFramesOnlyInTheLyrics) {
  auto outside = fakeElement("outside", &log);
  outside->role("AXButton").title("Play").frame({1, 2, 3, 4});
  auto row = fakeElement("row", &log);
  row->role("AXButton").title("text").frame({610, 110, 50, 20});
  lyrics->role("AXScrollArea").title("Lyrics").frame({600, 100, 100, 100}).children({row});
  window->children({outside, lyrics});
  ASSERT_TRUE(read().has_value());
  std::vector<std::string> expected{"application AXWindows", "window AXMinimized",
                                    "window AXPosition", "window AXSize"};
  const auto visit = [&](const std::string& name, std::vector<std::string> more) {
    for (const char* query : {"AXRole", "AXDescription", "AXTitle", "AXIdentifier"}) {
      expected.push_back(name + " " + query);
    }
    for (const std::string& query : more) expected.push_back(name + " " + query);
  };
  visit("window", {"AXChildren"});
  visit("outside", {"AXChildren"});
  visit("lyrics", {"AXPosition", "AXSize", "AXChildren"});
  visit("row", {"AXPosition", "AXSize", "AXChildren"});
  EXPECT_EQ(log, expected);
}

TEST_F(LyricsLayoutReaderTest, SizeIsNotAskedWhereThePositionIsMissing) {
  window->set("AXPosition", true);
  EXPECT_FALSE(read().has_value());
  EXPECT_THAT(log, ElementsAre("application AXWindows", "window AXMinimized", "window AXPosition"));
}

TEST_F(LyricsLayoutReaderTest, NothingIsKeptBetweenReadings) {
  auto playing = fakeElement();
  playing->identifier(nowPlaying).title("Song");
  readLyrics({button("row", {610, 110, 50, 20})});
  window->children({lyrics, playing});
  ASSERT_EQ(read()->title, "Song");
  window->children({});
  const auto layout = read();
  EXPECT_EQ(layout->title, "");
  EXPECT_EQ(layout->viewport, Rect());
  EXPECT_THAT(layout->rows, IsEmpty());
}

}  // namespace
}  // namespace vellora
