#include <ctime>
#include <functional>
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

// Seconds of this process on a processor.
double secondsOf(const std::function<void()>& work) {
  const auto now = [] {
    timespec time{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
  };
  const double before = now();
  work();
  return now() - before;
}

TEST_F(ReadingTest, TheIndexOfManyLinesIsMadeInTheBackgroundOnceForEachSetOfLines) {
  OverlaySnapshot snapshot{1, now(), true, "Night Drive", "River Band", 32, 0, {}};
  auto& lines = snapshot.lines.edit();
  for (int i = 0; i < 8'000; ++i) {
    const std::string number = std::to_string(i);
    lines.push_back({"작은 종이배가 밤의 강물을 따라서 " + number, "A small boat " + number});
  }
  lines.push_back({"Hello world", "Hallo Welt"});
  write(snapshotPath(), snapshot);
  bringMusicToFront();
  openLyrics();
  controller->tick();
  const double background = secondsOf([&] { platform.app.runBackground(); });
  const double main = secondsOf([&] { platform.app.runMain(); });
  EXPECT_LT(main, background / 2);
  ASSERT_EQ(controller->canvas.captions().size(), 1u);
  EXPECT_EQ(controller->canvas.captions()[0].text, "Hallo Welt");

  // The same lines, written again.
  const auto index = controller->lineIndex;
  snapshot.updatedAt += 0.5;
  write(snapshotPath(), snapshot);
  controller->tick();
  EXPECT_LT(secondsOf([&] { platform.app.runBackground(); }), background / 4);
  platform.app.runMain();
  EXPECT_EQ(controller->lineIndex, index);
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
