#include <thread>

#include "controller/controller_fixture.h"

namespace vellora {
namespace {

using testing::IsEmpty;

// What becomes of a reading of the player, from the tick that begins it to its result.
class ReadingTest : public ControllerTest {};

TEST_F(ReadingTest, AReadingBecomesCaptionsOverThePlayersWindow) {
  writeSnapshot();
  bringMusicToFront();
  openLyrics();
  tickAndRead();
  ASSERT_EQ(controller->canvas.captions().size(), 1u);
  EXPECT_EQ(controller->canvas.captions()[0].text, "Hallo Welt");
  EXPECT_EQ(platform.panel->lastFrame, (Rect{0, 170, 1200, 800}));
  EXPECT_TRUE(panelVisible());
  EXPECT_EQ(statusFile(), StatusFiles::oneRow);
  EXPECT_FALSE(controller->scanning);
}

TEST_F(ReadingTest, TheFrontmostProcessIsTheOneThatIsRead) {
  writeSnapshot();
  bringToFront("com.apple.Music", 99);
  tickAndRead();
  EXPECT_EQ(count("applicationElement 99"), 1u);
}

TEST_F(ReadingTest, ATickDuringAReadingLeavesEverythingAsItIs) {
  writeSnapshot();
  bringMusicToFront();
  controller->tick();
  platform.log.clear();
  controller->tick();
  controller->tick();
  EXPECT_EQ(platform.log, (Log{"frontmost?", "frontmost?"}));
  EXPECT_FALSE(exists("status.json"));
  EXPECT_EQ(platform.app.queues[0]->accepted, 1u);
}

TEST_F(ReadingTest, TheOtherChecksGoOnDuringAReading) {
  writeSnapshot();
  bringMusicToFront();
  controller->tick();
  platform.clock->advance(6.0);
  controller->tick();
  EXPECT_EQ(statusFile(), StatusFiles::waiting);
  EXPECT_TRUE(controller->scanning);
}

TEST_F(ReadingTest, AReadingIsNotOverBeforeItsResultIsBackOnTheMainThread) {
  writeSnapshot();
  bringMusicToFront();
  controller->tick();
  platform.app.runBackground();
  EXPECT_TRUE(controller->scanning);
  controller->tick();
  EXPECT_EQ(platform.app.queues[0]->accepted, 1u);
  platform.app.runMain();
  EXPECT_FALSE(controller->scanning);
  controller->tick();
  EXPECT_EQ(platform.app.queues[0]->accepted, 2u);
}

TEST_F(ReadingTest, MusicThatLeavesTheFrontDuringAReadingIsHiddenAtOnceAndAgainAtItsEnd) {
  writeSnapshot();
  bringMusicToFront();
  openLyrics();
  tickAndRead();
  controller->tick();
  bringToFront("org.example.Editor");
  controller->tick();
  EXPECT_FALSE(panelVisible());
  platform.log.clear();
  platform.app.runBackground();
  platform.log.clear();
  platform.app.runMain();
  EXPECT_EQ(platform.log, (Log{"frontmost?", "hide panel"}));
  EXPECT_EQ(statusFile(), StatusFiles::ready);
  EXPECT_FALSE(controller->scanning);
}

TEST_F(ReadingTest, AReadingThatEndsWithNothingInFrontIsNotRendered) {
  writeSnapshot();
  bringMusicToFront();
  openLyrics();
  controller->tick();
  platform.workspace->frontmost = nullptr;
  platform.app.runBackground();
  platform.app.runMain();
  EXPECT_THAT(controller->canvas.captions(), IsEmpty());
  EXPECT_EQ(statusFile(), StatusFiles::ready);
}

TEST_F(ReadingTest, ASnapshotThatTurnsStaleDuringTheReadingIsNotRendered) {
  writeSnapshot(5.9);
  bringMusicToFront();
  openLyrics();
  controller->tick();
  platform.clock->advance(0.2);
  writeSnapshot();  // what counts is the snapshot with which the reading began
  platform.app.runBackground();
  platform.app.runMain();
  EXPECT_THAT(controller->canvas.captions(), IsEmpty());
  EXPECT_FALSE(panelVisible());
  EXPECT_EQ(statusFile(), StatusFiles::ready);
}

TEST_F(ReadingTest, AReadingWithoutALayoutIsReportedByTheComposition) {
  writeSnapshot();
  bringMusicToFront();
  tickAndRead();
  EXPECT_EQ(statusFile(), StatusFiles::noLyrics);
  EXPECT_FALSE(panelVisible());
}

TEST_F(ReadingTest, AReadingInFlightDoesNotKeepTheControllerAlive) {
  writeSnapshot();
  bringMusicToFront();
  openLyrics();
  controller->tick();
  auto work = std::move(platform.app.queues[0]->work.front());
  platform.app.queues[0]->work.clear();
  const std::weak_ptr<OverlayDelegate> observer = controller;
  controller.reset();
  EXPECT_TRUE(observer.expired());
  work();  // in progress when its controller went
  EXPECT_EQ(platform.app.runMain(), 1u);
}

TEST_F(ReadingTest, AControllerThatGoesBetweenTheReadingAndItsResultIsLeftAlone) {
  writeSnapshot();
  bringMusicToFront();
  openLyrics();
  controller->tick();
  platform.app.runBackground();
  controller.reset();
  EXPECT_EQ(platform.app.runMain(), 1u);
  EXPECT_FALSE(exists("status.json"));
}

// Run under the thread sanitizer, this shows that a reading shares nothing with the controller.
TEST_F(ReadingTest, TicksGoOnWhileAReadingRunsOnAnotherThread) {
  platform.accessibility = std::make_shared<FakeAccessibility>();  // without the shared log
  build(snapshotPath());
  openLyrics();
  writeSnapshot();
  bringMusicToFront();
  controller->tick();
  auto work = std::move(platform.app.queues.back()->work.front());
  platform.app.queues.back()->work.clear();
  std::thread background(std::move(work));
  for (int i = 0; i < 20; ++i) {
    platform.clock->advance(0.01);
    controller->tick();
    controller->render(std::nullopt, OverlaySnapshot());
  }
  background.join();
  EXPECT_EQ(platform.app.queues.back()->accepted, 1u);
  EXPECT_EQ(statusFile(), StatusFiles::noLyrics);
  platform.app.runMain();
  EXPECT_EQ(statusFile(), StatusFiles::oneRow);
}

}  // namespace
}  // namespace vellora
