#include "render/composition.h"

#include <limits>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/fake_native_view.h"
#include "support/fake_painter.h"
#include "support/fake_panel.h"
#include "support/fake_workspace.h"

namespace vellora {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

const std::string noLyrics = "Open Music’s Now Playing view and show Lyrics";
const std::string otherSong = "Waiting for translations for this song";
const std::string noRoom = "No matching rows with room below them — try the alignment slider";

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

class CompositionTest : public ::testing::Test {
 protected:
  CompositionTest() {
    layout.window = {100, 50, 1200, 800};
    layout.viewport = {700, 100, 580, 650};
    layout.title = "A Song — An Artist";
    layout.rows = {
        {"one", {720, 300, 360, 40}}, {"two", {720, 400, 360, 40}}, {"three", {720, 500, 360, 40}}};
    snapshot.musicTitle = "A Song";
    snapshot.musicArtist = "An Artist";
    snapshot.fontSize = 30;
    snapshot.lines = {{"One", "eins"}, {"Two", "zwei"}, {"Three", "drei"}};
    view.setCaptions({{"earlier", {0, 0, 100, 20}, 20, 0}});
    log.clear();
  }

  std::string compose(bool showPanel = true) { return render(fields, layout, snapshot, showPanel); }
  std::vector<std::string> texts() const {
    std::vector<std::string> result;
    for (const Caption& caption : view.captions()) result.push_back(caption.text);
    return result;
  }

  Log log;
  FakePanel panel{log};
  FakePainter painter{log};
  FakeNativeView nativeView{log};
  FakeWorkspace workspace{log};
  CaptionView view{painter, nativeView, workspace};
  OverlayLines lastLines;
  std::shared_ptr<const TranslationIndex> lineIndex;
  TranslationCache translations;
  TrackMatchMemory trackMatch;
  PreparedIndex prepared;
  CompositionFields fields{panel,     view,         workspace,  painter, lastLines,
                           lineIndex, translations, trackMatch, prepared};
  MusicLayout layout;
  OverlaySnapshot snapshot;
};

TEST_F(CompositionTest, WithoutALayoutThePanelIsHidden) {
  EXPECT_EQ(render(fields, std::nullopt, snapshot), noLyrics);
  EXPECT_THAT(log, ElementsAre("hide panel"));
  EXPECT_THAT(texts(), ElementsAre("earlier"));
}

TEST_F(CompositionTest, AViewportWithoutAreaShowsNoLyrics) {
  for (const Rect& viewport :
       {Rect{}, Rect{700, 100, 0, 650}, Rect{700, 100, 580, 0}, Rect{1280, 100, -580, 650},
        Rect{700, 750, 580, -650}, Rect::null()}) {
    layout.viewport = viewport;
    layout.title = "Another Song — An Artist";  // which is not asked yet
    log.clear();
    EXPECT_EQ(compose(), noLyrics);
    EXPECT_THAT(log, ElementsAre("hide panel"));
  }
  EXPECT_THAT(lastLines, IsEmpty());
}

TEST_F(CompositionTest, AnotherSongHidesThePanelAndLeavesTheCachesAsTheyWere) {
  compose();
  log.clear();
  layout.title = "Another Song — An Artist";
  EXPECT_EQ(compose(), otherSong);
  EXPECT_THAT(log, ElementsAre("hide panel"));
  EXPECT_EQ(lastLines, snapshot.lines);
  EXPECT_THAT(translations, SizeIs(3));
  EXPECT_THAT(texts(), ElementsAre("eins", "zwei", "drei"));
}

TEST_F(CompositionTest, ThePainterIsToldAllTextsOfATranslationOnceForEachSetOfLines) {
  layout.rows.pop_back();
  compose();
  compose();
  EXPECT_THAT(painter.translations, ElementsAre(ElementsAre("eins", "zwei", "drei")));
  snapshot.lines.edit()[1].translation = "two";
  compose();
  EXPECT_THAT(painter.translations, SizeIs(2));
  EXPECT_THAT(painter.translations.back(), ElementsAre("eins", "two", "drei"));
}

TEST_F(CompositionTest, PicturesAreForgottenWhereTheirTextsMayLookDifferentFromNowOn) {
  FakeSurface surface(log);
  compose();
  view.draw(surface);
  EXPECT_EQ(view.cachedImageCount(), 3u);
  snapshot.lines.edit().push_back({"Four", "vier"});
  compose();
  EXPECT_EQ(view.cachedImageCount(), 3u);
  snapshot.lines.edit().push_back({"Five", "fünf"});
  painter.translationsDiffer = true;
  compose();
  EXPECT_EQ(view.cachedImageCount(), 0u);
  compose();
  view.draw(surface);
  compose();
  EXPECT_EQ(view.cachedImageCount(), 3u);
}

TEST_F(CompositionTest, AWindowThatNamesNoSongShowsNoCaptions) {
  layout.title = "";
  EXPECT_EQ(compose(), otherSong);
  EXPECT_THAT(log, ElementsAre("hide panel"));
  EXPECT_THAT(texts(), ElementsAre("earlier"));
}

TEST_F(CompositionTest, AnotherSongsNewLinesAreNotTakenOver) {
  compose();
  const OverlayLines before = lastLines;
  snapshot.lines = {{"Four", "vier"}};
  layout.title = "Another Song — An Artist";
  compose();
  EXPECT_EQ(lastLines, before);
  EXPECT_THAT(translations, SizeIs(3));
}

TEST_F(CompositionTest, CaptionsAreFramedFilledAndShownInThisOrder) {
  EXPECT_EQ(compose(), "Following Music • 3 translated rows");
  EXPECT_THAT(log, ElementsAre("measure eins", "measure zwei", "measure drei", "panel frame",
                               "view frame", "needs display", "needs display", "show panel"));
  EXPECT_EQ(panel.lastFrame, (Rect{100, 150, 1200, 800}));  // 1000 − 850 from the bottom
  EXPECT_EQ(nativeView.lastFrame, (Rect{0, 0, 1200, 800}));
  EXPECT_THAT(texts(), ElementsAre("eins", "zwei", "drei"));
}

TEST_F(CompositionTest, CaptionsStandUnderTheirRowsInTheWindowsCoordinates) {
  compose();
  const Caption& first = view.captions().at(0);
  // 342 is 2 under the row; the window begins at (100, 50); 20 measured and 8 of padding.
  EXPECT_EQ(first.rect, (Rect{622, 292, 536, 28}));
  EXPECT_EQ(first.font, 19.5);
  // The reading line is at 327.5; 27.5 of 650 from it is within the sharp band, 172.5 beyond it.
  EXPECT_EQ(first.softness, 0);
  EXPECT_EQ(view.captions().at(2).softness, 1);
}

TEST_F(CompositionTest, SoftnessIsMeasuredInTheViewportNotInTheWindow) {
  // An eighth of the viewport's 650 under the reading line at 327.5.
  layout.rows = {{"one", {720, 408.75, 360, 40}}};
  compose();
  EXPECT_EQ(view.captions().at(0).softness, 0.5);
}

TEST_F(CompositionTest, TheVerticalOffsetMovesCaptions) {
  snapshot.verticalOffset = 5;
  compose();
  EXPECT_EQ(view.captions().at(0).rect.y, 297);
}

TEST_F(CompositionTest, ThePanelIsShownUnlessToldOtherwise) {
  render(fields, layout, snapshot);
  EXPECT_TRUE(panel.visible);
}

TEST_F(CompositionTest, WithoutShowPanelThePanelsVisibilityIsLeftAlone) {
  compose(false);
  EXPECT_THAT(log, ElementsAre("measure eins", "measure zwei", "measure drei", "panel frame",
                               "view frame", "needs display", "needs display"));
  EXPECT_FALSE(panel.visible);
  panel.visible = true;
  compose(false);
  EXPECT_TRUE(panel.visible);
}

TEST_F(CompositionTest, WithoutAScreenThePrimaryHeightIsZero) {
  workspace.primaryHeight.reset();
  compose();
  EXPECT_EQ(panel.lastFrame, (Rect{100, -850, 1200, 800}));
}

TEST_F(CompositionTest, FontSizeIsScaledAndBounded) {
  struct Case {
    double snapshotSize, size, cap;
  };
  for (const Case& c :
       {Case{10, 12, 32}, Case{30, 19.5, 51}, Case{60, 32, 84}, Case{notANumber, 12, 32}}) {
    EXPECT_EQ(captionFontSize(c.snapshotSize), c.size);
    EXPECT_EQ(captionHeightCap(c.size), c.cap);
  }
}

TEST_F(CompositionTest, TextIsMeasuredAtTheFontsSizeNarrowerThanItIsDrawn) {
  compose();
  // 1280 − 720 − 44.
  EXPECT_EQ(painter.measurements.at(0), (FakePainter::Measurement{19.5, 516, 1000}));
}

TEST_F(CompositionTest, TextIsNeverMeasuredNarrowerThanEightyPoints) {
  layout.rows = {{"one", {1200, 300, 60, 40}}};
  compose();
  EXPECT_EQ(painter.measurements.at(0).width, 80);
}

TEST_F(CompositionTest, MeasuredHeightsAreRoundedUpAndCapped) {
  painter.lineHeight = 20.25;
  compose();
  EXPECT_EQ(view.captions().at(0).rect.height, 29);
  painter.lineHeight = 300;
  compose();
  EXPECT_EQ(view.captions().at(0).rect.height, 51 + 8);
}

TEST_F(CompositionTest, RowsOutsideTheViewportAreNotEvenLookedUp) {
  layout.rows = {{"one", {720, 40, 360, 40}}, {"two", {720, 400, 360, 40}}};
  EXPECT_EQ(compose(), "Following Music • 1 translated rows");
  EXPECT_FALSE(translations.contains("one"));
  EXPECT_TRUE(translations.contains("two"));
}

TEST_F(CompositionTest, ARowWithoutATranslationIsCachedAsEmptyAndNotLookedUpAgain) {
  layout.rows.push_back({"nothing", {720, 600, 360, 40}});
  EXPECT_EQ(compose(), "Following Music • 3 translated rows");
  ASSERT_TRUE(translations.contains("nothing"));
  EXPECT_EQ(translations.at("nothing"), "");

  // An index that would now find it is not asked.
  lineIndex =
      std::make_shared<const TranslationIndex>(std::vector<OverlayLine>{{"nothing", "nichts"}});
  EXPECT_EQ(compose(), "Following Music • 3 translated rows");
}

TEST_F(CompositionTest, NewLinesEmptyTheCacheAndAreLookedUpAnew) {
  layout.rows = {{"nothing", {720, 400, 360, 40}}, {"one", {720, 500, 360, 40}}};
  compose();
  snapshot.lines.edit().push_back({"Nothing", "nichts"});
  EXPECT_EQ(compose(), "Following Music • 2 translated rows");
  EXPECT_THAT(texts(), ElementsAre("nichts", "eins"));
  EXPECT_EQ(lastLines, snapshot.lines);

  layout.rows.pop_back();
  snapshot.lines = {{"Two", "zwei"}, {"Nothing", "rien"}};
  compose();
  EXPECT_THAT(texts(), ElementsAre("rien"));
  EXPECT_THAT(translations, SizeIs(1));
}

TEST_F(CompositionTest, APreparedIndexIsTakenForItsOwnLinesAndNoOthers) {
  prepared = PreparedIndex(std::make_shared<const OverlaySnapshot>(snapshot));
  compose();
  EXPECT_EQ(lineIndex, prepared.index);
  EXPECT_THAT(texts(), ElementsAre("eins", "zwei", "drei"));

  snapshot.lines = {{"Two", "deux"}};
  compose();
  EXPECT_NE(lineIndex, prepared.index);
  EXPECT_THAT(texts(), ElementsAre("deux"));

  snapshot.lines = prepared.snapshot->lines;
  compose();
  EXPECT_EQ(lineIndex, prepared.index);
  EXPECT_THAT(texts(), ElementsAre("eins", "zwei", "drei"));
}

TEST_F(CompositionTest, TheOrderOfLinesCountsForTheCache) {
  compose();
  auto& lines = snapshot.lines.edit();
  std::swap(lines[0], lines[1]);
  translations["one"] = "stale";
  compose();
  EXPECT_THAT(texts(), ElementsAre("eins", "zwei", "drei"));
}

TEST_F(CompositionTest, WhileTheLinesAreUnchangedTheCacheAnswers) {
  compose();
  translations["one"] = "kept";
  snapshot.musicTitle = "a song";
  snapshot.updatedAt += 1;
  compose();
  EXPECT_EQ(texts().at(0), "kept");
}

TEST_F(CompositionTest, RowsWithTheSameTextShareOneEntry) {
  layout.rows = {{"one", {720, 300, 360, 40}}, {"one", {720, 400, 360, 40}}};
  EXPECT_EQ(compose(), "Following Music • 2 translated rows");
  EXPECT_THAT(translations, SizeIs(1));
}

TEST_F(CompositionTest, CanonicallyEqualRowTextsShareOneEntry) {
  snapshot.lines = {{"caf\u00E9", "Kaffee"}};
  layout.rows = {{"caf\u00E9", {720, 300, 360, 40}}, {"cafe\u0301", {720, 400, 360, 40}}};
  EXPECT_EQ(compose(), "Following Music • 2 translated rows");
  EXPECT_THAT(translations, SizeIs(1));
}

TEST_F(CompositionTest, TheKeyIsTheRowsTextAsItWasRead) {
  layout.rows = {{"ONE", {720, 300, 360, 40}}, {" ONE! ", {720, 400, 360, 40}}};
  EXPECT_EQ(compose(), "Following Music • 2 translated rows");
  EXPECT_THAT(translations, SizeIs(2));
  EXPECT_TRUE(translations.contains("ONE"));
  EXPECT_TRUE(translations.contains(" ONE! "));
}

TEST_F(CompositionTest, TheLastRowsLimitIsTheViewportsBottom) {
  // 2 under the row, 28 tall, 3 free: 33 in all.
  layout.rows = {{"one", {720, 750 - 33 - 40, 360, 40}}};
  EXPECT_EQ(compose(), "Following Music • 1 translated rows");
  layout.rows = {{"one", {720, 750 - 32.5 - 40, 360, 40}}};
  EXPECT_EQ(compose(), noRoom);
}

TEST_F(CompositionTest, ASkippedRowStillLimitsTheOneAboveIt) {
  layout.rows = {{"one", {720, 300, 360, 40}}, {"nothing", {720, 372, 360, 40}}};
  EXPECT_EQ(compose(), noRoom);
  layout.rows[1].frame.y = 373;
  EXPECT_EQ(compose(), "Following Music • 1 translated rows");
}

TEST_F(CompositionTest, ARowBesideTheViewportStillLimitsTheOneAboveIt) {
  layout.rows = {{"one", {720, 300, 360, 40}},
                 {"two", {100, 372, 360, 40}},  // ends left of the viewport
                 {"three", {720, 500, 360, 40}}};
  EXPECT_EQ(compose(), "Following Music • 1 translated rows");
  EXPECT_THAT(texts(), ElementsAre("drei"));
  layout.rows[1].frame.y = 373;
  EXPECT_EQ(compose(), "Following Music • 2 translated rows");
  EXPECT_THAT(texts(), ElementsAre("eins", "drei"));
}

TEST_F(CompositionTest, OnlyPlacedCaptionsAreCounted) {
  layout.rows[1].frame.y = 365;  // leaves the first row no room
  EXPECT_EQ(compose(), "Following Music • 2 translated rows");
  EXPECT_THAT(texts(), ElementsAre("zwei", "drei"));
}

TEST_F(CompositionTest, WhereNothingFitsThePanelIsHiddenAndTheViewKeepsItsCaptions) {
  compose();
  log.clear();
  for (MusicRow& row : layout.rows) row.frame.width = 40;
  EXPECT_EQ(compose(), noRoom);
  EXPECT_THAT(log, ElementsAre("measure eins", "measure zwei", "measure drei", "hide panel"));
  EXPECT_THAT(texts(), ElementsAre("eins", "zwei", "drei"));
  EXPECT_THAT(translations, SizeIs(3));
}

TEST_F(CompositionTest, NoRowsAtAllLeaveNoRoom) {
  layout.rows.clear();
  EXPECT_EQ(compose(), noRoom);
}

TEST_F(CompositionTest, TheMessageKeepsThePluralForOneCaption) {
  layout.rows.resize(1);
  EXPECT_EQ(compose(), "Following Music • 1 translated rows");
}

}  // namespace
}  // namespace vellora
