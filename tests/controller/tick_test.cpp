#include "controller/controller_fixture.h"

namespace vellora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TickTest : public ControllerTest {};

TEST_F(TickTest, ConstructionShowsNothingStartsNothingAndLeavesTheFieldsEmpty) {
  EXPECT_EQ(controller->snapshotURL, snapshotPath());
  EXPECT_FALSE(controller->scanning);
  EXPECT_EQ(controller->timer, nullptr);
  EXPECT_EQ(controller->statusItem, nullptr);
  EXPECT_EQ(controller->statusMessage, "");
  EXPECT_THAT(controller->lastLines, IsEmpty());
  EXPECT_THAT(controller->translations, IsEmpty());
  EXPECT_THAT(controller->canvas.captions(), IsEmpty());
  EXPECT_EQ(controller->lastFresh, now());
  EXPECT_LT(controller->lastNowPlayingPublish, -6e10);  // before all dates
  EXPECT_FALSE(controller->requestedAccess);
  EXPECT_THAT(platform.log, IsEmpty());
  EXPECT_THAT(platform.app.timers, IsEmpty());
  ASSERT_EQ(platform.app.queues.size(), 1u);
  EXPECT_EQ(platform.app.queues[0]->label, "Vellora.accessibility");
  EXPECT_THAT(folder.names(), IsEmpty());
}

TEST_F(TickTest, WithoutALocationEveryTickHidesThePanelAndWritesNothing) {
  build(std::nullopt);
  platform.log.clear();
  controller->tick();
  controller->tick();
  EXPECT_THAT(platform.log, ElementsAre("hide panel", "hide panel"));
  EXPECT_EQ(controller->statusMessage, "");
  EXPECT_THAT(folder.names(), IsEmpty());
}

TEST_F(TickTest, WithoutALocationTheProgramEndsJustAfterFifteenSeconds) {
  build(std::nullopt);
  platform.clock->advance(15.0);
  controller->tick();
  EXPECT_EQ(platform.app.terminations, 0);
  platform.clock->advance(0.12);
  controller->tick();
  EXPECT_EQ(platform.app.terminations, 1);
  EXPECT_THAT(folder.names(), IsEmpty());
}

// What each of these files means does not differ from no file at all.
TEST_F(TickTest, AnUnusableSnapshotHidesThePanelAndWaits) {
  const std::vector<std::function<void()>> worlds = {
      [] {},
      [this] { writeSnapshot(6.0); },
      [this] { writeSnapshot(-1.001); },
      [this] { writeSnapshot(0, false); },
      [this] { writeText(snapshotPath(), "not JSON"); },
      [this] { writeText(snapshotPath(), R"({"version":1})"); },
      [this] {
        std::filesystem::remove(snapshotPath());
        std::filesystem::create_directory(snapshotPath());
      },
  };
  for (const auto& world : worlds) {
    world();
    platform.log.clear();
    controller->tick();
    EXPECT_THAT(platform.log, ElementsAre("hide panel"));
    EXPECT_EQ(statusFile(), StatusFiles::waiting);
  }
}

TEST_F(TickTest, AStaleSnapshotStopsTheOverlayMoreThanFifteenSecondsAfterTheLastUsableOne) {
  writeSnapshot();
  controller->tick();
  EXPECT_EQ(controller->lastFresh, now());
  platform.clock->advance(15.0);
  controller->tick();
  EXPECT_EQ(platform.app.terminations, 0);
  EXPECT_EQ(statusFile(), StatusFiles::waiting);
  platform.clock->advance(0.001);
  controller->tick();
  EXPECT_EQ(platform.app.terminations, 1);
  EXPECT_EQ(statusFile(), StatusFiles::stopped);
}

TEST_F(TickTest, TheLastWaitIsReportedBeforeTheEnd) {
  controller->applicationDidFinishLaunching();
  controller->writeStatus("Another line", false);
  platform.log.clear();
  platform.clock->advance(15.001);
  controller->tick();
  EXPECT_EQ(platform.log, (Log{"hide panel", "tooltip Waiting for fresh lyrics from Tessaly",
                               "tooltip Overlay stopped", "hide panel", "terminate"}));
}

TEST_F(TickTest, AUsableSnapshotMovesLastFreshWhateverFollows) {
  writeSnapshot();
  platform.accessibility->trusted = false;
  platform.clock->advance(3);
  controller->tick();
  EXPECT_EQ(controller->lastFresh, now());
}

TEST_F(TickTest, AStaleSnapshotUnderASyncRequestFollowsMusicForTessalyAndNeverStops) {
  play("One");
  for (int i = 0; i < 100; ++i) {
    writeSnapshot(6.0);
    writeSync();
    writeCommand();
    controller->tick();
    EXPECT_FALSE(exists("command.json"));
    EXPECT_EQ(statusFile(), StatusFiles::following);
    platform.clock->advance(0.5);
  }
  EXPECT_EQ(platform.app.terminations, 0);
  // A command and a question at each tick.
  EXPECT_EQ(platform.scripting->requests.size(), 200u);
}

TEST_F(TickTest, ALapsedSyncRequestLetsTheOldAgeOfTheSnapshotStopTheOverlayAtOnce) {
  writeSync();
  platform.clock->advance(24.9);
  controller->tick();
  EXPECT_EQ(platform.app.terminations, 0);
  EXPECT_EQ(statusFile(), StatusFiles::following);
  platform.clock->advance(0.1);
  controller->tick();
  EXPECT_EQ(platform.app.terminations, 1);
}

TEST_F(TickTest, TheCommandAndThePublicationComeBeforeTheScan) {
  writeSnapshot();
  writeSync();
  writeCommand();
  play("One");
  bringMusicToFront();
  std::vector<std::string> seen;
  platform.scripting->onRun = [&](const ScriptRequest& request) {
    seen.push_back(request.command ? "command" : "question");
    EXPECT_FALSE(controller->scanning);
    EXPECT_EQ(count("frontmost?"), 0u);
  };
  controller->tick();
  EXPECT_THAT(seen, ElementsAre("command", "question"));
  EXPECT_TRUE(exists("nowplaying.json"));
  EXPECT_TRUE(controller->scanning);
  EXPECT_EQ(platform.app.backgroundWaiting(), 1u);
}

TEST_F(TickTest, TheCommandAndThePublicationNeedNoTrustAndComeBeforeItsCheck) {
  writeSnapshot();
  writeSync();
  writeCommand();
  play("One");
  platform.accessibility->trusted = false;
  std::vector<std::string> seen;
  platform.scripting->onRun = [&](const ScriptRequest& request) {
    seen.push_back(request.command ? "command" : "question");
  };
  platform.accessibility->onRequestTrust = [&] { seen.push_back("trust"); };
  controller->tick();
  EXPECT_THAT(seen, ElementsAre("command", "question", "trust"));
  EXPECT_EQ(statusFile(), StatusFiles::allow);
}

TEST_F(TickTest, TheSnapshotIsLookedForWhenTheCommandHasRun) {
  writeSync();
  writeCommand();
  platform.scripting->onRun = [this](const ScriptRequest&) { writeSnapshot(); };
  controller->tick();
  EXPECT_EQ(statusFile(), StatusFiles::ready);
}

TEST_F(TickTest, ASnapshotThatTurnsStaleWhileTheCommandRunsIsNotUsed) {
  writeSnapshot(5.9);
  writeSync();
  writeCommand();
  bringMusicToFront();
  platform.scripting->onRun = [this](const ScriptRequest&) { platform.clock->advance(0.2); };
  controller->tick();
  EXPECT_EQ(statusFile(), StatusFiles::following);
  EXPECT_FALSE(controller->scanning);
}

TEST_F(TickTest, ASyncRequestThatLapsesWhileTheCommandRunsCountsUntilTheTickIsOver) {
  writeSync(24.9);
  writeCommand();
  platform.scripting->onRun = [this](const ScriptRequest&) { platform.clock->advance(20); };
  controller->tick();
  EXPECT_EQ(statusFile(), StatusFiles::following);
  EXPECT_EQ(platform.app.terminations, 0);
  controller->tick();
  EXPECT_EQ(platform.app.terminations, 1);
}

TEST_F(TickTest, WithoutASyncRequestNoCommandRunsAndNothingIsPublished) {
  writeSnapshot();
  writeCommand();
  play("One");
  controller->tick();
  EXPECT_TRUE(exists("command.json"));
  EXPECT_FALSE(exists("nowplaying.json"));
  EXPECT_THAT(platform.scripting->requests, IsEmpty());
}

TEST_F(TickTest, TheSystemIsAskedForTrustOnlyByTheFirstTickThatLacksIt) {
  writeSnapshot();
  bringMusicToFront();
  platform.accessibility->trusted = false;
  platform.accessibility->onRequestTrust = [this] { EXPECT_TRUE(controller->requestedAccess); };
  controller->tick();
  EXPECT_EQ(platform.log, (Log{"requestTrust", "hide panel"}));
  EXPECT_EQ(statusFile(), StatusFiles::allow);
  controller->tick();
  controller->tick();
  EXPECT_EQ(count("requestTrust"), 1u);
  EXPECT_EQ(count("hide panel"), 3u);
  EXPECT_EQ(platform.app.backgroundWaiting(), 0u);
}

TEST_F(TickTest, TrustIsNotAskedForWhileThereIsNoUsableSnapshot) {
  platform.accessibility->trusted = false;
  controller->tick();
  EXPECT_EQ(count("requestTrust"), 0u);
  EXPECT_EQ(statusFile(), StatusFiles::waiting);
}

TEST_F(TickTest, AnythingButMusicInFrontHidesThePanel) {
  writeSnapshot();
  const std::vector<std::function<void()>> worlds = {
      [this] { platform.workspace->frontmost = nullptr; },
      [this] { bringToFront(std::nullopt); },
      [this] { bringToFront("com.apple.music"); },
      [this] { bringToFront("com.apple.Music2"); },
  };
  for (const auto& world : worlds) {
    world();
    platform.log.clear();
    controller->tick();
    EXPECT_EQ(platform.log, (Log{"frontmost?", "hide panel"}));
    EXPECT_EQ(statusFile(), StatusFiles::ready);
    EXPECT_FALSE(controller->scanning);
  }
}

TEST_F(TickTest, TheSnapshotAndTheRequestAreReadAfreshAtEveryTick) {
  writeSnapshot();
  controller->tick();
  EXPECT_EQ(statusFile(), StatusFiles::ready);
  std::filesystem::remove(snapshotPath());
  controller->tick();
  EXPECT_EQ(statusFile(), StatusFiles::waiting);
  writeSync();
  controller->tick();
  EXPECT_EQ(statusFile(), StatusFiles::following);
  writeSnapshot();
  controller->tick();
  EXPECT_EQ(statusFile(), StatusFiles::ready);
}

// A system may run the event loop while a script waits for the player: the timer fires, a URL
// comes.
TEST_F(TickTest, ATickThatComesWhileAScriptWaitsDoesNotNest) {
  writeSync();
  writeCommand();
  int inside = 0;
  platform.scripting->onRun = [&](const ScriptRequest&) {
    if (++inside > 1) return;
    writeCommand();
    platform.clock->advance(0.6);  // so that it would publish, too
    controller->tick();
    EXPECT_TRUE(exists("command.json"));
  };
  controller->tick();
  EXPECT_EQ(inside, 2) << "the command, and what plays";
  EXPECT_TRUE(exists("command.json"));
  controller->tick();
  EXPECT_FALSE(exists("command.json")) << "the next tick takes it in";
}

TEST_F(TickTest, AUrlThatComesWhileAScriptWaitsIsTakenInByTheNextTick) {
  writeSync();
  const auto other = makeVelloraFolder("other") / "snapshot.json";
  platform.scripting->onRun = [&](const ScriptRequest&) {
    controller->applicationOpen({"tessaly-overlay://x?snapshot=" + other.string()});
    EXPECT_FALSE(std::filesystem::exists(other.parent_path() / "status.json"));
  };
  controller->tick();
  EXPECT_EQ(platform.scripting->requests.size(), 1u);
  controller->tick();
  EXPECT_TRUE(std::filesystem::exists(other.parent_path() / "status.json"));
}

}  // namespace
}  // namespace vellora
