#include <optional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/linux/accessibility/described_fixture.h"
#include "platform/linux/accessibility/media_players.h"

namespace vellora {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using DescribedReading = DescribedFixture;

TEST_F(DescribedReading, APageIsReadAsThePlayerShowsItself) {
  makePage(5);
  begin();
  const MusicLayout layout = readPage();
  EXPECT_EQ(layout.window, (Rect{100, 50, 1000, 700}));
  EXPECT_EQ(layout.viewport, (Rect{300, 200, 400, 300}));
  EXPECT_EQ(layout.title, "Song \u2014 One, Two");
  EXPECT_THAT(texts(layout), ElementsAre("line 0", "line 1", "line 2", "line 3", "line 4"));
  EXPECT_EQ(layout.rows[2].frame, (Rect{310, 400, 300, 40}));
}

// Rows are bare elements, 40 high, whose words have a box of their own inside.
class DescribedFrameOfText : public DescribedReading {
 protected:
  void makePageOfTexts() {
    makePage(6);
    for (const std::size_t one : rows) {
      object(one).text = "Zeile äöü " + object(one).name;
      object(one).name.clear();
    }
    PlayerDescription description = labelled();
    description.lyrics->isFrameOfText = true;
    describe(description);
    begin();
  }
};

TEST_F(DescribedFrameOfText, IsWhereTheRowsAre) {
  makePageOfTexts();
  EXPECT_EQ(readPage().rows.at(2).frame, (Rect{318, 408, 284, 24}));
  scroll(30);
  EXPECT_LE(questions(), 25);
  EXPECT_EQ(readPage().rows.at(2).frame, (Rect{318, 378, 284, 24}));
}

TEST_F(DescribedFrameOfText, FollowsATextThatBecomesLonger) {
  makePageOfTexts();
  readPage();
  change(rows[1], [](FakeAccessible& row) { *row.text += " and more"; });
  player->play("browser", FakeMedia{.title = "Another song"});
  EXPECT_TRUE(eventually([&] {
    const MusicLayout layout = readPage();
    return layout.rows.size() == 6 && layout.rows[1].text == "Zeile äöü line 1 and more" &&
           layout.rows[1].frame == (Rect{318, 308, 284, 24});
  }));
}

TEST_F(DescribedReading, WithoutADescriptionThatSaysWhereTheLyricsAreAProgramShowsItself) {
  start(programWithRows(3));
  PlayerDescription plain;
  plain.identifier = "plain";
  describe(plain);
  window.process = player->pid();
  windows->bringToFront(window);
  EXPECT_THAT(texts(readRows(3)), ElementsAre("row 0", "row 1", "row 2"));
}

TEST_F(DescribedReading, AMediaPlayerIsFoundThoughNoReadingHasTimeForItsAnswers) {
  makePage(3);
  begin();
  MediaPlayers players;
  const auto title = [&] {
    const auto over = std::chrono::steady_clock::now() - std::chrono::seconds(1);
    const auto track = players.playerOf(player->pid(), over);
    return track ? track->title : std::string();
  };
  EXPECT_TRUE(eventually([&] { return title() == "Song"; }));
  player->play("browser", std::nullopt);
  EXPECT_TRUE(eventually([&] { return title().empty(); }));
  player->play("browser", FakeMedia{.title = "Song again"});
  EXPECT_TRUE(eventually([&] { return title() == "Song again"; }));
}

TEST_F(DescribedReading, APageIsNotLookedThroughWithoutAMediaPlayer) {
  makePage(3);
  program.media.clear();
  begin();
  for (int i = 0; i < 3; ++i) {
    const MusicLayout layout = readPage();
    EXPECT_EQ(layout.window, (Rect{100, 50, 1000, 700}));
    EXPECT_THAT(texts(layout), IsEmpty());
  }
  EXPECT_EQ(player->counts().attributes, 0);
  EXPECT_EQ(player->counts().matches, 0);

  player->play("late", FakeMedia{.title = "Song"});
  EXPECT_TRUE(eventually([&] { return readTexts().size() == 3; }));
  EXPECT_EQ(readPage().title, "Song");
  player->play("late", std::nullopt);
  EXPECT_TRUE(eventually([&] { return readTexts().empty(); }));
}

TEST_F(DescribedReading, AReadingAfterAnotherAsksOnlyWhatMoves) {
  makePage(60);
  begin();
  readPage();
  EXPECT_LE(questions(), 25);
  scroll(30);
  EXPECT_LE(questions(), 25);
}

TEST_F(DescribedReading, AfterScrollingAllRowsInSightAreInPlaceAtOnce) {
  makePage(60);
  begin();
  readPage();
  scroll(2050);
  EXPECT_THAT(topsInSight(readPage()), ElementsAre(250, 350, 450));
  scroll(-1999);
  const MusicLayout layout = readPage();
  EXPECT_THAT(topsInSight(layout), ElementsAre(249, 349, 449));
  EXPECT_EQ(layout.rows.front().frame.y, 149);
  EXPECT_EQ(layout.rows.back().frame.y, 149 + 5900);
}

TEST_F(DescribedReading, AnotherTabTakesTheRowsAwayAtOnce) {
  makePage(4);
  begin();
  readPage();
  change(document, [](FakeAccessible& page) { page.states = 0; });
  EXPECT_THAT(readTexts(), IsEmpty());
  change(document, [](FakeAccessible& page) { page.states = FakeState::showing; });
  remember(std::chrono::milliseconds(1));
  EXPECT_EQ(readTexts().size(), 4U);
}

TEST_F(DescribedReading, RowsThatAreMadeAnewAreReadAtOnce) {
  makePage(3);
  begin();
  readPage();
  std::vector<std::size_t> fresh;
  for (int i = 0; i < 3; ++i) {
    fresh.push_back(program.objects.size());
    program.objects.push_back(pageRow("new " + std::to_string(i), 220 + 100 * i));
    player->put(fresh.back(), program.objects.back());
  }
  for (const std::size_t old : rows) {
    change(old, [](FakeAccessible& it) { it.extents.reset(); });
  }
  change(view, [&](FakeAccessible& it) { it.children = fresh; });
  const MusicLayout layout = readPage();
  EXPECT_THAT(texts(layout), ElementsAre("new 0", "new 1", "new 2"));
  EXPECT_THAT(topsInSight(layout), ElementsAre(220, 320, 420));
}

TEST_F(DescribedReading, OneRowMoreIsReadAtOnce) {
  makePage(3);
  begin();
  readPage();
  const std::size_t fresh = program.objects.size();
  program.objects.push_back(pageRow("last", 500));
  player->put(fresh, program.objects.back());
  change(view, [&](FakeAccessible& it) { it.children.push_back(fresh); });
  EXPECT_THAT(readTexts(), ElementsAre("line 0", "line 1", "line 2", "last"));
}

TEST_F(DescribedReading, ARowThatGrowsIsSeenWithThoseThatItMoves) {
  makePage(60);
  begin();
  readPage();
  change(rows[1], [](FakeAccessible& it) { (*it.extents)[3] += 20; });
  for (std::size_t i = 2; i < rows.size(); ++i) {
    change(rows[i], [](FakeAccessible& it) { (*it.extents)[1] += 20; });
  }
  const MusicLayout layout = readPage();
  EXPECT_THAT(topsInSight(layout), ElementsAre(200, 300, 420));
  EXPECT_EQ(layout.rows[1].frame.height, 60);
  EXPECT_EQ(layout.rows[59].frame.y, 200 + 5900 + 20);
}

TEST_F(DescribedReading, WithTheNextSongTheTextsAreReadAgain) {
  makePage(80);
  begin();
  readPage();
  change(rows[79], [](FakeAccessible& it) { it.name = "other words"; });
  EXPECT_EQ(readTexts().back(), "line 79");
  player->play("browser", FakeMedia{.title = "Next"});
  EXPECT_TRUE(eventually([&] { return readPage().title == "Next"; }));
  EXPECT_EQ(readTexts().back(), "other words");
}

TEST_F(DescribedReading, AChangedTextIsSeenWhenItIsNoLongerBelieved) {
  remember(std::chrono::milliseconds(1));
  makePage(40);
  begin();
  readPage();
  change(rows[0], [](FakeAccessible& it) { it.name = "other words"; });
  EXPECT_TRUE(eventually([&] { return readTexts().front() == "other words"; }));
  change(rows[39], [](FakeAccessible& it) { it.name = "out of sight"; });
  EXPECT_TRUE(eventually([&] { return readTexts().back() == "out of sight"; }));
}

TEST_F(DescribedReading, ATextOfSeveralElementsIsReadAsOne) {
  makePage(3);
  PlayerDescription bare = labelled();
  bare.lyrics->row.roles = {FakeRole::section};
  bare.lyrics->row.classes = {"line*"};
  describe(bare);
  for (const std::size_t one : rows) {
    object(one).role = FakeRole::section;
    object(one).name.clear();
    object(one).classes = "bright line-big";
  }
  object(rows[0]).text = " first \u00a0\n words ";
  object(rows[1]).text = "two \uFFFC, three \uFFFC";
  add(program, rows[1], {.role = FakeRole::section, .text = "and"});
  add(program, rows[1], {.role = FakeRole::text, .name = "four"});
  const std::size_t inner = add(program, rows[2], {.role = FakeRole::section});
  add(program, inner, {.role = FakeRole::text, .name = "five"});
  add(program, rows[2], {.role = FakeRole::text, .name = "six"});
  begin();
  EXPECT_THAT(readTexts(), ElementsAre("first words", "two and, three four", "five six"));
}

// A screen of two device pixels a point, and the window at device pixels (200, 100).
TEST_F(DescribedReading, APageToldInDevicePixelsIsPlacedInPoints) {
  makePage(2);
  window.clientArea = Rect{200, 100, 2000, 1400};
  window.scale = 2;
  object(document).extents = Extents{200, 300, 2000, 1200};
  object(view).extents = Extents{600, 400, 800, 600};
  object(rows[0]).extents = Extents{620, 420, 600, 80};
  begin();
  const MusicLayout layout = readPage();
  EXPECT_EQ(layout.window, (Rect{100, 50, 1000, 700}));
  EXPECT_EQ(layout.viewport, (Rect{300, 200, 400, 300}));
  EXPECT_EQ(layout.rows[1].frame, (Rect{310, 210, 300, 40}));
}

TEST_F(DescribedReading, APageToldInLogicalPixelsStaysWhereItIs) {
  makePage(2);
  window.clientArea = Rect{200, 100, 2000, 1400};
  window.scale = 2;
  begin();
  const MusicLayout layout = readPage();
  EXPECT_EQ(layout.window, (Rect{100, 50, 1000, 700}));
  EXPECT_EQ(layout.viewport, (Rect{300, 200, 400, 300}));
  EXPECT_EQ(layout.rows[1].frame, (Rect{310, 300, 300, 40}));
}

TEST_F(DescribedReading, ABrowserWithAScaleOfItsOwnIsWhereTheWindowSystemSaysItIs) {
  makePage(1);
  window.clientArea = Rect{200, 100, 2000, 1400};
  object(document).extents = Extents{200, 300, 2000, 1200};
  object(view).extents = Extents{600, 400, 800, 600};
  begin();
  const MusicLayout layout = readPage();
  EXPECT_EQ(layout.window, (Rect{200, 100, 2000, 1400}));
  EXPECT_EQ(layout.viewport, (Rect{600, 400, 800, 600}));
}

TEST_F(DescribedReading, AHangingBrowserIsAskedOneQuestion) {
  makePage(10);
  begin();
  readPage();
  player->process().stop();
  const int before = player->counts().all;
  for (int i = 0; i < 5; ++i) EXPECT_FALSE(read({.seconds = 0.05}));
  player->process().resume();
  EXPECT_TRUE(eventually([&] { return player->counts().all > before; }));
  bus.connections();  // a round trip, so that all were answered that came before
  EXPECT_EQ(player->counts().all, before + 1);
  EXPECT_EQ(readTexts().size(), 10U);
}

TEST_F(DescribedReading, ABrowserThatAnswersWrongTypesHasNoRows) {
  makePage(3);
  for (const std::size_t one : {view, rows[0], rows[1], rows[2]}) {
    object(one).answersWrongTypes = true;
  }
  begin();
  const MusicLayout layout = readPage();
  EXPECT_EQ(layout.window, (Rect{100, 50, 1000, 700}));
  EXPECT_THAT(texts(layout), IsEmpty());
}

TEST_F(DescribedReading, APageThatLeadsBackIntoItselfIsReadToItsEnd) {
  makePage(3);
  program.hasCollection = false;
  object(rows[2]).role = FakeRole::section;
  object(rows[2]).children = {document, view, frame};
  begin();
  EXPECT_THAT(readTexts(), ElementsAre("line 0", "line 1"));
}

TEST_F(DescribedReading, WhatOneReadingHasNoTimeForTheNextOnesGoOnWith) {
  makePage(40);
  begin();
  player->counts().microsecondsBelowRoot = 2000;
  std::optional<MusicLayout> layout;
  EXPECT_TRUE(eventually([&] {
    layout = read({.seconds = 0.05, .messagingTimeout = 1000});
    return layout && layout->rows.size() == 40;
  }));
}

TEST_F(DescribedReading, InALargePageTheRowsAreFoundWithoutAWalk) {
  makePage(10);
  for (int i = 0; i < 2000; ++i) add(program, document, {.role = FakeRole::section});
  begin();
  EXPECT_EQ(readTexts().size(), 10U);
  EXPECT_LE(player->counts().all, 150);
  EXPECT_LE(questions(), 25);
}

TEST_F(DescribedReading, TheTitleIsThatOfTheElementWhichThePatternNames) {
  makePage(2);
  PlayerDescription titled = labelled();
  titled.lyrics->title.ids = {"song"};
  titled.lyrics->artist.classes = {"by"};
  describe(titled);
  const std::size_t title = add(program, document, {.role = FakeRole::section});
  object(title).attributeId = "song";
  object(title).text = "Page's song";
  const std::size_t artist = add(program, document, {.role = FakeRole::section, .name = "Her"});
  object(artist).classes = "by";
  begin();
  EXPECT_EQ(readPage().title, "Page's song \u2014 Her");
  change(rows[0], [](FakeAccessible& it) { it.name = "other words"; });
  change(title, [](FakeAccessible& it) { it.text = "Next"; });
  const MusicLayout layout = readPage();
  EXPECT_EQ(layout.title, "Next \u2014 Her");
  EXPECT_THAT(texts(layout), ElementsAre("other words", "line 1"));
}

TEST_F(DescribedReading, TheViewportIsTheElementAroundTheViewThatThePatternNames) {
  makePage(2);
  PlayerDescription scrolled = labelled();
  scrolled.lyrics->container.classes = {"player"};
  scrolled.lyrics->viewport.classes = {"scroller"};
  describe(scrolled);
  const std::size_t outer = add(program, document, {.role = FakeRole::section});
  object(outer).classes = "player";
  const std::size_t scroller = add(program, outer, {.role = FakeRole::section});
  object(scroller).classes = "scroller";
  object(scroller).extents = Extents{300, 600, 400, 400};
  const std::size_t inner = add(program, scroller, object(view));
  begin();
  const MusicLayout layout = readPage();
  EXPECT_EQ(layout.viewport, (Rect{300, 600, 400, 150}));  // the page ends at 750
  EXPECT_EQ(object(inner).children, rows);
  EXPECT_THAT(texts(layout), ElementsAre("line 0", "line 1"));
}

TEST_F(DescribedReading, ABrowserThatIsGoneIsNotRead) {
  makePage(3);
  begin();
  readPage();
  player->process().kill();
  EXPECT_FALSE(read(patient));
}

}  // namespace

}  // namespace vellora
