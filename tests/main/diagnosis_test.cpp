#include "main/diagnosis.h"

#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/fake_platform.h"

namespace vellora {
namespace {

class DiagnosisTest : public testing::Test {
 protected:
  std::string diagnosis() {
    std::ostringstream output;
    std::ostringstream said;
    diagnose(platform, output, said);
    notes = said.str();
    return output.str();
  }
  void runMusic(std::int32_t pid) {
    platform.running.push_back(std::make_shared<FakeRunningApplication>("com.apple.Music", pid));
  }
  static std::shared_ptr<FakeElement> row(std::string text, Rect frame) {
    auto element = fakeElement();
    element->role("AXButton").title(std::move(text)).frame(frame);
    return element;
  }
  void openWindow(std::int32_t pid, AccessibilityElements rows) {
    auto title = fakeElement();
    title->identifier("Music.nowPlaying.title-Music.nowPlaying.subtitle")
        .description("Night Drive — River Band");
    auto lyrics = fakeElement();
    lyrics->role("AXScrollArea").description("Lyrics").frame({600, 100, 580, 650.5});
    lyrics->children(std::move(rows));
    auto window = fakeElement();
    window->role("AXWindow").frame({0, 30, 1200, 800}).children({title, lyrics});
    auto application = fakeElement();
    application->windows({window});
    platform.accessibility->applications[pid] = application;
  }

  static constexpr char windowLine[] =
      "Window: (0.0, 30.0, 1200.0, 800.0), viewport: (600.0, 100.0, 580.0, 650.5), "
      "title: Night Drive — River Band\n";

  FakePlatform platform;
  std::string notes;  // of the last diagnosis
};

TEST_F(DiagnosisTest, ARectangleIsFourNumbersWithAPointEach) {
  EXPECT_EQ(rectText({12.5, 40, 300, 22}), "(12.5, 40.0, 300.0, 22.0)");
  EXPECT_EQ(rectText({-0.1, 1e16, 0, 1e-5}), "(-0.1, 1e+16, 0.0, 1e-05)");
  EXPECT_EQ(rectText(Rect::null()), "(inf, inf, 0.0, 0.0)");
  EXPECT_EQ(rectText({10, 10, -5, -5}), "(10.0, 10.0, -5.0, -5.0)");
}

TEST_F(DiagnosisTest, WithoutThePlayerOnlyTheTrustIsPrinted) {
  EXPECT_EQ(diagnosis(), "Accessibility trusted: true\n");
}

TEST_F(DiagnosisTest, WithoutAReadableWindowOnlyTheTrustIsPrinted) {
  runMusic(7);
  EXPECT_EQ(diagnosis(), "Accessibility trusted: true\n");
}

TEST_F(DiagnosisTest, WithoutTrustNothingCanBeReadAndNobodyIsAsked) {
  platform.accessibility->trusted = false;
  runMusic(7);  // its elements answer nothing then
  EXPECT_EQ(diagnosis(), "Accessibility trusted: false\n");
  EXPECT_THAT(platform.log, testing::Not(testing::Contains("requestTrust")));
}

TEST_F(DiagnosisTest, TheWindowAndTheRowsInTheViewportArePrintedInOrder) {
  runMusic(7);
  openWindow(7, {row("Above", {620, 20, 360, 60}), row("One", {620, 220.25, 360, 60}),
                 row("Two", {620, 300, 360, 60}), row("Below", {620, 751, 360, 60})});
  EXPECT_EQ(diagnosis(), std::string("Accessibility trusted: true\n") + windowLine +
                             "(620.0, 220.25, 360.0, 60.0): One\n"
                             "(620.0, 300.0, 360.0, 60.0): Two\n");
}

TEST_F(DiagnosisTest, AReadingThatMayHaveBeenCutShortIsNotedBesideTheOutput) {
  runMusic(7);
  openWindow(7, {row("One", {620, 220.25, 360, 60})});
  const std::string whole = diagnosis();
  EXPECT_EQ(notes, "");
  AccessibilityElements many{row("One", {620, 220.25, 360, 60})};
  for (int i = 0; i < 700; ++i) many.push_back(fakeElement());
  openWindow(7, many);
  EXPECT_EQ(diagnosis(), whole);
  EXPECT_EQ(notes, "The reading may have been cut short, after 700 elements\n");
  std::shared_ptr<FakeElement> deep = fakeElement();
  many.front() = deep;
  for (int depth = 3; depth <= 24; ++depth) {
    const auto child = fakeElement();
    deep->children({child});
    deep = child;
  }
  openWindow(7, many);
  diagnosis();
  EXPECT_EQ(notes, "The reading may have been cut short, after 700 elements, below 24 levels\n");
}

TEST_F(DiagnosisTest, ARowThatOnlyTouchesTheViewportIsPrinted) {
  runMusic(7);
  openWindow(7, {row("Above", {620, 39.5, 360, 60}), row("Touching", {620, 40, 360, 60})});
  EXPECT_EQ(diagnosis(), std::string("Accessibility trusted: true\n") + windowLine +
                             "(620.0, 40.0, 360.0, 60.0): Touching\n");
}

TEST_F(DiagnosisTest, TheFirstOfTwoPlayersIsRead) {
  runMusic(7);
  runMusic(8);
  openWindow(8, {});
  EXPECT_EQ(diagnosis(), "Accessibility trusted: true\n");
  openWindow(7, {});
  EXPECT_EQ(diagnosis(), std::string("Accessibility trusted: true\n") + windowLine);
}

TEST_F(DiagnosisTest, AWindowWithoutLyricsHasAViewportOfZeros) {
  runMusic(7);
  auto window = fakeElement();
  window->role("AXWindow").frame({1, 2, 3, 4});
  auto application = fakeElement();
  application->windows({window});
  platform.accessibility->applications[7] = application;
  EXPECT_EQ(diagnosis(),
            "Accessibility trusted: true\n"
            "Window: (1.0, 2.0, 3.0, 4.0), viewport: (0.0, 0.0, 0.0, 0.0), title: \n");
}

}  // namespace
}  // namespace vellora
