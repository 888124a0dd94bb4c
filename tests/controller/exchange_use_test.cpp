#include <chrono>
#include <filesystem>

#include "controller/controller_fixture.h"
#include "support/ordinary_user.h"

namespace vellora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// The exchange folder as the controller uses it.
class ExchangeUseTest : public ControllerTest {
 protected:
  std::size_t questions() const {
    std::size_t result = 0;
    for (const auto& request : platform.scripting->requests) result += !request.command;
    return result;
  }
  std::size_t commands() const { return platform.scripting->requests.size() - questions(); }

  void open(const std::string& url) { controller->applicationOpen({url}); }
};

TEST_F(ExchangeUseTest, WithoutALocationThereIsNoFolderAndNoFileIsTouched) {
  build(std::nullopt);
  EXPECT_EQ(controller->directory(), std::nullopt);
  EXPECT_EQ(controller->statusURL(), std::nullopt);
  writeSync();
  writeCommand();
  EXPECT_FALSE(controller->syncRequested());
  controller->performPendingCommand();
  controller->publishNowPlaying();
  controller->tick();
  EXPECT_THAT(folder.names(), ElementsAre("command.json", "sync.json"));
  EXPECT_THAT(platform.scripting->requests, IsEmpty());
}

TEST_F(ExchangeUseTest, TheFolderFollowsTheSnapshotLocationAtOnce) {
  controller->snapshotURL = "/somewhere/else/lyrics.json";
  EXPECT_EQ(controller->directory(), std::filesystem::path("/somewhere/else"));
  EXPECT_EQ(controller->statusURL(), std::filesystem::path("/somewhere/else/status.json"));
}

TEST_F(ExchangeUseTest, WritingIntoAFolderThatIsNotThereLeavesNothing) {
  build(folder / "missing" / "lyrics.json");
  play("One");
  controller->tick();
  controller->publishNowPlaying();
  controller->stop();
  EXPECT_THAT(folder.names(), IsEmpty());
}

TEST_F(ExchangeUseTest, TheFirstTickWithARequestPublishesAtOnce) {
  writeSync();
  play("One");
  controller->tick();
  EXPECT_EQ(nowPlayingFile(),
            R"({"version":1,"updatedAt":1700000000,"title":"One","artist":"Artist",)"
            R"("album":"Album","position":12.5,"playing":true})");
}

TEST_F(ExchangeUseTest, PublicationsAreHalfASecondApart) {
  writeSync();
  play("One");
  controller->tick();
  platform.clock->advance(0.3);
  controller->tick();
  EXPECT_EQ(questions(), 1u);
  platform.clock->advance(0.25);
  controller->tick();
  EXPECT_EQ(questions(), 2u);
  platform.clock->advance(0.5);
  controller->tick();
  EXPECT_EQ(questions(), 3u);
}

TEST_F(ExchangeUseTest, EveryPublicationIsWrittenEvenWhenNothingElseChanged) {
  writeSync();
  play("One");
  controller->tick();
  platform.clock->advance(0.5);
  controller->tick();
  EXPECT_THAT(nowPlayingFile(), testing::HasSubstr(R"("updatedAt":1700000000.5,)"));
}

TEST_F(ExchangeUseTest, AStoppedPlayerIsAskedTwiceASecondAndLeavesTheFileAlone) {
  writeSync();
  writeText(folder / "nowplaying.json", "earlier");
  controller->tick();
  EXPECT_EQ(nowPlayingFile(), "earlier");
  EXPECT_EQ(controller->lastNowPlayingPublish, now());
  platform.clock->advance(0.3);
  controller->tick();
  EXPECT_EQ(questions(), 1u);
  std::filesystem::remove(folder / "nowplaying.json");
  platform.clock->advance(0.25);
  controller->tick();
  EXPECT_EQ(questions(), 2u);
  EXPECT_FALSE(exists("nowplaying.json"));
}

TEST_F(ExchangeUseTest, ALapsedRequestPausesCommandsAndPublicationUntilItIsRenewed) {
  writeSync(30);
  writeCommand();
  play("One");
  controller->tick();
  EXPECT_FALSE(controller->syncRequested());
  EXPECT_TRUE(exists("command.json"));
  EXPECT_FALSE(exists("nowplaying.json"));
  writeSync();
  controller->tick();
  EXPECT_TRUE(controller->syncRequested());
  EXPECT_FALSE(exists("command.json"));
  EXPECT_EQ(commands(), 1u);
  EXPECT_TRUE(exists("nowplaying.json"));
  EXPECT_TRUE(exists("sync.json"));
}

TEST_F(ExchangeUseTest, AMalformedRequestIsNone) {
  for (const char* text : {"", "not JSON", "{}", R"({"updatedAt":"now"})"}) {
    writeText(folder / "sync.json", text);
    EXPECT_FALSE(controller->syncRequested()) << text;
  }
}

TEST_F(ExchangeUseTest, AClockSetBackSilencesPublicationUntilItHasPassedTheLastAttempt) {
  writeSync();
  play("One");
  controller->publishNowPlaying();
  platform.clock->advance(-10);
  controller->publishNowPlaying();
  platform.clock->advance(10.25);
  controller->publishNowPlaying();
  EXPECT_EQ(questions(), 1u);
  platform.clock->advance(0.25);
  controller->publishNowPlaying();
  EXPECT_EQ(questions(), 2u);
}

TEST_F(ExchangeUseTest, AFreshCommandRunsOnceAndItsFileGoes) {
  writeSync();
  writeCommand(5);
  controller->tick();
  EXPECT_FALSE(exists("command.json"));
  controller->tick();
  EXPECT_EQ(commands(), 1u);
}

TEST_F(ExchangeUseTest, ACommandThatIsTooOldOrTooFarAheadIsRemovedAndNotRun) {
  for (const double age : {25.0, 20.0, -3.0}) {
    writeSync();
    writeCommand(age);
    controller->tick();
    EXPECT_FALSE(exists("command.json")) << age;
    EXPECT_EQ(commands(), 0u) << age;
  }
}

TEST_F(ExchangeUseTest, AMalformedCommandStaysAndIsNeverRun) {
  const char* const files[] = {
      R"({"requestedAt":1700000000,"action":"next","title":"","artist":""})",
      R"({"requestedAt":1700000000,"action":"Next","title":"","artist":"","position":0})",
      R"({"requestedAt":1700000000,"action":"pause","title":"","artist":"","position":0})",
      "not JSON",
  };
  writeSync();
  for (const char* text : files) {
    writeText(folder / "command.json", text);
    controller->tick();
    controller->tick();
    EXPECT_EQ(readText(folder / "command.json"), text);
  }
  EXPECT_EQ(commands(), 0u);
}

TEST_F(ExchangeUseTest, WithoutARequestACommandWaitsHoweverLong) {
  writeCommand();
  const std::string command = readText(folder / "command.json");
  for (int i = 0; i < 100; ++i) {
    controller->tick();
    EXPECT_EQ(readText(folder / "command.json"), command);
    platform.clock->advance(1);
  }
  EXPECT_THAT(platform.scripting->requests, IsEmpty());
  writeSync();
  controller->tick();
  EXPECT_FALSE(exists("command.json"));
  EXPECT_EQ(commands(), 0u);
}

TEST_F(ExchangeUseTest, OnlyTheLaterOfTwoCommandsIsSeen) {
  writeSync();
  writeCommand(0, MusicCommand::Action::next);
  writeCommand(0, MusicCommand::Action::previous);
  controller->tick();
  ASSERT_EQ(commands(), 1u);
  EXPECT_EQ(platform.scripting->requests[0].command->command.action,
            MusicCommand::Action::previous);
}

TEST_F(ExchangeUseTest, ACommandIsFollowedByAPublicationInTheSameTick) {
  writeSync();
  play("One");
  controller->tick();
  platform.clock->advance(0.1);
  controller->tick();
  ASSERT_EQ(questions(), 1u);
  platform.clock->advance(0.1);
  play("Two");
  writeCommand();
  controller->tick();
  EXPECT_EQ(questions(), 2u);
  EXPECT_THAT(nowPlayingFile(), testing::HasSubstr(R"("title":"Two")"));
}

TEST_F(ExchangeUseTest, ADroppedCommandDoesNotHastenThePublication) {
  writeSync();
  play("One");
  controller->tick();
  platform.clock->advance(0.1);
  writeCommand(25);
  controller->tick();
  EXPECT_EQ(questions(), 1u);
}

TEST_F(ExchangeUseTest, AFreshCommandWhoseFileCannotBeRemovedRunsUntilItIsTwentySecondsOld) {
  using std::filesystem::perms;
  writeSync();
  writeCommand(19);
  std::filesystem::permissions(folder.path(), perms::owner_read | perms::owner_exec |
                                                  perms::group_read | perms::group_exec |
                                                  perms::others_read | perms::others_exec);
  const OrdinaryUser here;
  ASSERT_TRUE(here.worked());
  controller->tick();
  controller->tick();
  EXPECT_EQ(commands(), 2u);
  platform.clock->advance(1);
  controller->tick();
  EXPECT_EQ(commands(), 2u);
  EXPECT_TRUE(exists("command.json"));
}

TEST_F(ExchangeUseTest, WhatACrashLeftIsRemovedAtTheLaunchAndFromANewFolder) {
  // Of a process beyond the largest number that one can have.
  const auto leave = [](const std::filesystem::path& exchange) {
    const auto left = exchange / ".vellora-2000000000-0";
    writeText(left, "half");
    std::filesystem::last_write_time(
        left, std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
    return left;
  };
  const auto first = leave(snapshotPath().parent_path());
  controller->applicationDidFinishLaunching();
  EXPECT_FALSE(std::filesystem::exists(first));
  const auto moved = makeVelloraFolder("a");
  const auto second = leave(moved);
  open("tessaly-overlay://x?snapshot=" + (moved / "snapshot.json").string());
  EXPECT_FALSE(std::filesystem::exists(second));
}

TEST_F(ExchangeUseTest, AnAcceptedUrlMovesEveryFileAtOnce) {
  writeSync();
  writeCommand();
  const auto moved = makeVelloraFolder("a");
  write(moved / "sync.json", SyncRequest{now()});
  write(moved / "command.json", MusicCommand(now(), MusicCommand::Action::next, "Song"));
  play("One");
  open("tessaly-overlay://x?snapshot=" + (moved / "snapshot.json").string());
  EXPECT_EQ(controller->snapshotURL, moved / "snapshot.json");
  EXPECT_EQ(controller->directory(), moved);
  EXPECT_EQ(controller->statusURL(), moved / "status.json");
  EXPECT_EQ(readText(moved / "status.json"), StatusFiles::following);
  EXPECT_TRUE(std::filesystem::exists(moved / "nowplaying.json"));
  EXPECT_FALSE(std::filesystem::exists(moved / "command.json"));
  EXPECT_THAT(folder.names(), ElementsAre("a", "command.json", "sync.json"));
}

TEST_F(ExchangeUseTest, AnAcceptedUrlLeavesTheOldRequestBehind) {
  writeSync();
  const auto moved = makeVelloraFolder("a");
  write(moved / "command.json", MusicCommand(now(), MusicCommand::Action::next, "Song"));
  open("tessaly-overlay:?snapshot=" + (moved / "snapshot.json").string());
  EXPECT_FALSE(controller->syncRequested());
  EXPECT_TRUE(std::filesystem::exists(moved / "command.json"));
  EXPECT_THAT(platform.scripting->requests, IsEmpty());
  EXPECT_EQ(readText(moved / "status.json"), StatusFiles::waiting);
}

TEST_F(ExchangeUseTest, AnAcceptedUrlFindsTheNewRequestAndTheNewSnapshot) {
  const auto moved = makeVelloraFolder("a");
  writeSnapshot();
  std::filesystem::rename(snapshotPath(), moved / "snapshot.json");
  write(moved / "sync.json", SyncRequest{now()});
  open("tessaly-overlay:?snapshot=" + (moved / "snapshot.json").string());
  EXPECT_TRUE(controller->syncRequested());
  EXPECT_EQ(questions(), 1u);
  EXPECT_EQ(readText(moved / "status.json"), StatusFiles::ready);
}

TEST_F(ExchangeUseTest, AnAcceptedUrlGivesFifteenSecondsMoreAndANewStatus) {
  controller->tick();
  const auto moved = makeVelloraFolder("a");
  platform.clock->advance(100);
  open("tessaly-overlay://?snapshot=" + (moved / "snapshot.json").string());
  EXPECT_EQ(controller->lastFresh, now());
  EXPECT_EQ(platform.app.terminations, 0);
  EXPECT_EQ(readText(moved / "status.json"), StatusFiles::waiting);
}

TEST_F(ExchangeUseTest, AnAcceptedUrlWritesTheStatusEvenOverAnOldFileWithTheSameLine) {
  controller->tick();
  const auto moved = makeVelloraFolder("a");
  writeText(moved / "status.json", "earlier");
  open("tessaly-overlay:?snapshot=" + (moved / "snapshot.json").string());
  EXPECT_EQ(readText(moved / "status.json"), StatusFiles::waiting);
}

TEST_F(ExchangeUseTest, ARejectedUrlChangesNothing) {
  controller->tick();
  platform.log.clear();
  platform.clock->advance(3);
  const double lastFresh = controller->lastFresh;
  const std::vector<std::vector<std::string>> lists = {
      {},
      {"tessaly-overlay://x?snapshot=Vellora/snapshot.json"},
      {"tessaly-overlay://x?snapshot=/tmp/snapshot.json"},
      {"TESSALY-OVERLAY://x?snapshot=/Users/a/Vellora/snapshot.json"},
      {"tessaly-overlay://x?snapshot"},
      {"tessaly-overlay://x"},
      {"other://x", "tessaly-overlay://x?snapshot=/Users/a/Vellora/snapshot.json"},
  };
  for (const auto& urls : lists) {
    controller->applicationOpen(urls);
    EXPECT_EQ(controller->snapshotURL, snapshotPath());
    EXPECT_EQ(controller->lastFresh, lastFresh);
    EXPECT_NE(controller->statusMessage, "");
    EXPECT_THAT(platform.log, IsEmpty());  // no tick
  }
}

TEST_F(ExchangeUseTest, TheFirstSnapshotItemOfTheFirstUrlCounts) {
  controller->applicationOpen(
      {"tessaly-overlay://x?other=1&snapshot=/a/Vellora/snapshot.json"
       "&snapshot=/b/Vellora/snapshot.json",
       "tessaly-overlay://x?snapshot=/c/Vellora/snapshot.json"});
  EXPECT_EQ(controller->snapshotURL, std::filesystem::path("/a/Vellora/snapshot.json"));
}

TEST_F(ExchangeUseTest, AUrlGivesALocationToAControllerThatHadNone) {
  build(std::nullopt);
  const auto moved = makeVelloraFolder("a");
  open("tessaly-overlay://x?snapshot=" + (moved / "snapshot.json").string());
  EXPECT_EQ(readText(moved / "status.json"), StatusFiles::waiting);
}

}  // namespace
}  // namespace vellora
