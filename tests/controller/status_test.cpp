#include <thread>

#include "controller/controller_fixture.h"
#include "controller/status_messages.h"

namespace vellora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class StatusTest : public ControllerTest {
 protected:
  // Marks the file, so that a later look tells whether it has been written again.
  void markFile() { writeText(folder / "status.json", "untouched"); }
  bool fileUntouched() { return statusFile() == "untouched"; }
};

struct MessageRow {
  std::string_view message;
  std::string_view text;
};

TEST_F(StatusTest, EveryMessageIsToTheCharacter) {
  const MessageRow rows[] = {
      {StatusMessages::followingForTessaly, "Following Music for Tessaly"},
      {StatusMessages::waitingForLyrics, "Waiting for fresh lyrics from Tessaly"},
      {StatusMessages::allowAccess,
       "Allow Vellora in System Settings \u2192 Privacy & Security \u2192 Accessibility"},
      {StatusMessages::bringMusicToFront, "Ready \u2014 bring Music to the front"},
      {StatusMessages::stopped, "Overlay stopped"},
  };
  for (const MessageRow& row : rows) EXPECT_EQ(row.message, row.text);
}

TEST_F(StatusTest, ALineIsRecordedShownAndWritten) {
  controller->applicationDidFinishLaunching();
  controller->writeStatus("A \"line\" / \u65e5", false);
  EXPECT_EQ(controller->statusMessage, "A \"line\" / \u65e5");
  EXPECT_EQ(platform.statusItem->toolTip, "A \"line\" / \u65e5");
  EXPECT_EQ(statusFile(), "{\"message\":\"A \\\"line\\\" \\/ \u65e5\",\"stopped\":false}");
}

TEST_F(StatusTest, WithoutALocationNothingIsRecordedShownOrWritten) {
  build(std::nullopt);
  controller->applicationDidFinishLaunching();
  controller->writeStatus("A line", false);
  controller->writeStatus("A line", true);
  EXPECT_EQ(controller->statusMessage, "");
  EXPECT_EQ(platform.statusItem->toolTip, "Vellora");
  EXPECT_THAT(folder.names(), IsEmpty());
}

TEST_F(StatusTest, TenIdenticalLinesWriteTheFileOnce) {
  controller->writeStatus("A line", false);
  EXPECT_EQ(statusFile(), R"({"message":"A line","stopped":false})");
  markFile();
  for (int i = 0; i < 9; ++i) controller->writeStatus("A line", false);
  EXPECT_TRUE(fileUntouched());
}

TEST_F(StatusTest, ASkippedLineDoesNotTouchTheTooltip) {
  controller->applicationDidFinishLaunching();
  controller->writeStatus("A line", false);
  platform.log.clear();
  controller->writeStatus("A line", false);
  EXPECT_THAT(platform.log, IsEmpty());
  controller->writeStatus("B line", false);
  EXPECT_THAT(platform.log, ElementsAre("tooltip B line"));
}

TEST_F(StatusTest, ADeletedFileIsWrittenAgainByTheNextTick) {
  controller->tick();
  std::filesystem::remove(folder / "status.json");
  controller->tick();
  EXPECT_EQ(statusFile(), StatusFiles::waiting);
}

TEST_F(StatusTest, TheSameLineWithStoppedIsWrittenAgainEveryTime) {
  controller->writeStatus("A line", false);
  controller->writeStatus("A line", true);
  EXPECT_EQ(statusFile(), R"({"message":"A line","stopped":true})");
  markFile();
  controller->writeStatus("A line", true);
  EXPECT_EQ(statusFile(), R"({"message":"A line","stopped":true})");
}

TEST_F(StatusTest, CanonicallyEquivalentLinesAreTheSameLine) {
  controller->writeStatus("caf\u00e9", false);
  markFile();
  controller->writeStatus("cafe\u0301", false);
  EXPECT_TRUE(fileUntouched());
  EXPECT_EQ(controller->statusMessage, "caf\u00e9");
}

TEST_F(StatusTest, AFailedWriteKeepsTheLineAndIsTriedAgain) {
  const auto folderToCome = folder / "later";
  build(folderToCome / "lyrics.json");
  controller->writeStatus("A line", false);
  EXPECT_EQ(controller->statusMessage, "A line");
  EXPECT_THAT(folder.names(), IsEmpty());
  std::filesystem::create_directory(folderToCome);
  controller->writeStatus("A line", false);
  EXPECT_EQ(readText(folderToCome / "status.json"), R"({"message":"A line","stopped":false})");
}

TEST_F(StatusTest, TheFileIsReplacedAsAWholeAndNothingStaysBeside) {
  controller->writeStatus("A line", false);
  std::filesystem::create_hard_link(folder / "status.json", folder / "old");
  controller->writeStatus("B line", false);
  EXPECT_EQ(readText(folder / "old"), R"({"message":"A line","stopped":false})");
  EXPECT_EQ(statusFile(), R"({"message":"B line","stopped":false})");
  EXPECT_THAT(folder.names(), ElementsAre("old", "status.json"));
}

TEST_F(StatusTest, HideOrdersThePanelOutAndReports) {
  platform.panel->visible = true;
  controller->hide("A line");
  EXPECT_FALSE(panelVisible());
  EXPECT_EQ(statusFile(), R"({"message":"A line","stopped":false})");
}

TEST_F(StatusTest, StopWritesHidesAndEndsTheProgramInThisOrder) {
  controller->applicationDidFinishLaunching();
  platform.panel->visible = true;
  platform.log.clear();
  controller->stop();
  EXPECT_EQ(platform.log, (Log{"tooltip Overlay stopped", "hide panel", "terminate"}));
  EXPECT_EQ(statusFile(), StatusFiles::stopped);
}

TEST_F(StatusTest, StopWritesEvenWhenItWasTheLastLine) {
  controller->stop();
  markFile();
  controller->stop();
  EXPECT_EQ(statusFile(), StatusFiles::stopped);
}

TEST_F(StatusTest, StopRemovesNothing) {
  controller->applicationDidFinishLaunching();
  writeSnapshot();
  writeSync(30);
  writeCommand();
  controller->stop();
  EXPECT_NE(controller->statusItem, nullptr);
  EXPECT_NE(controller->timer, nullptr);
  EXPECT_FALSE(platform.app.timers[0]->stopped);
  EXPECT_THAT(folder.names(),
              ElementsAre("command.json", "lyrics.json", "status.json", "sync.json"));
}

TEST_F(StatusTest, StopDuringAnActiveSyncRequestOnlyHidesUntilTheNextTick) {
  controller->applicationDidFinishLaunching();
  writeSync(24.9);
  platform.panel->visible = true;
  controller->stop();
  EXPECT_EQ(statusFile(), StatusFiles::stopped);
  EXPECT_FALSE(panelVisible());
  EXPECT_EQ(platform.app.terminations, 0);
  EXPECT_FALSE(platform.app.timers[0]->stopped);
  platform.app.fireTimers();
  EXPECT_EQ(statusFile(), StatusFiles::following);
}

TEST_F(StatusTest, StopEndsTheProgramWhateverElseTheSyncFileHolds) {
  const std::vector<std::function<void()>> worlds = {
      [this] { writeSync(25.0); },
      [this] { writeSync(-1.001); },
      [this] { writeText(folder / "sync.json", "{}"); },
      [this] { writeText(folder / "sync.json", "not JSON"); },
  };
  int expected = 0;
  for (const auto& world : worlds) {
    world();
    controller->stop();
    EXPECT_EQ(platform.app.terminations, ++expected);
  }
}

TEST_F(StatusTest, StopWithoutALocationWritesNothingAndEndsTheProgram) {
  build(std::nullopt);
  platform.panel->visible = true;
  controller->stop();
  EXPECT_FALSE(panelVisible());
  EXPECT_EQ(platform.app.terminations, 1);
  EXPECT_THAT(folder.names(), IsEmpty());
}

TEST_F(StatusTest, StopDoesNotWaitForAReadingInFlight) {
  writeSnapshot();
  bringMusicToFront();
  controller->tick();
  controller->stop();
  EXPECT_EQ(platform.app.terminations, 1);
  EXPECT_TRUE(controller->scanning);
}

}  // namespace
}  // namespace vellora
