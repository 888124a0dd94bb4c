#include <fstream>
#include <set>

#include <signal.h>

#include "base/files.h"
#include "e2e/desk.h"

namespace vellora::e2e {
namespace {

// docs/examples/minimal_companion.py in the companion's place; the test itself writes nothing.
class TheExampleOnTheDesk : public Desk {
 protected:
  // The rows that the player shows, each with a translation, as the example takes them.
  void writeLines(const OverlaySnapshot& snapshot) const {
    std::ofstream file(folder / "lines.tsv");
    for (const OverlayLine& line : snapshot.lines) {
      file << line.source << "\t" << line.translation << "\n";
    }
  }
  void startCompanion(const OverlaySnapshot& snapshot, std::vector<std::string> options = {}) {
    writeLines(snapshot);
    std::vector<std::string> arguments{
        VELLORA_PYTHON,      VELLORA_MINIMAL_COMPANION, exchange,
        snapshot.musicTitle, snapshot.musicArtist,      folder / "lines.tsv"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    companion = std::make_unique<Process>(std::move(arguments), folder / "companion.log");
  }
  std::string said() const {
    const auto text = readWholeFile(folder / "companion.log");
    return text.value_or("");
  }
  void TearDown() override {
    if (companion) companion->stop();
    Desk::TearDown();
  }
  std::unique_ptr<Process> companion;
};

TEST_F(TheExampleOnTheDesk, DrivesTheOverlayFromTheCommandToTheCaptions) {
  ASSERT_NO_FATAL_FAILURE(startPlayer({"--song", "4", "--position", "12"}));
  const OverlaySnapshot wanted = snapshotOfPlayer();
  // Another song plays when the example is started with --play.
  player->stop();
  ASSERT_NO_FATAL_FAILURE(startPlayer({"--song", "1"}));
  std::filesystem::remove(exchange);
  startCompanion(wanted, {"--play"});
  ASSERT_TRUE(waitFor([&] { return fileExists(exchange / "snapshot.json"); })) << said();
  writtenFiles->watch(exchange);
  startOverlay();
  ASSERT_TRUE(waitFor([&] { return nowPlaying() && nowPlaying()->title == wanted.musicTitle; }))
      << "the command did not reach the player: " << said();
  EXPECT_FALSE(fileExists(exchange / commandFileName));
  ASSERT_TRUE(waitFor([&] { return following(); })) << said();
  // The rows stand still in a paused player, and can be compared with the captions.
  send(MusicCommand(now(), MusicCommand::Action::playPause, ""));
  ASSERT_TRUE(waitFor([&] { return nowPlaying() && !nowPlaying()->playing; }));
  EXPECT_TRUE(waitFor([&] { return captionsRight(); })) << "no captions under the rows";
  EXPECT_TRUE(waitFor([&] { return said().find("Following Music • ") != std::string::npos; }))
      << said();
  EXPECT_TRUE(waitFor([&] {
    return writtenFiles->count("snapshot.json") >= 2 && writtenFiles->count("sync.json") >= 2 &&
           writtenFiles->count("nowplaying.json") >= 2 && writtenFiles->count("status.json") >= 1;
  })) << "not every file of the exchange was seen";
}

TEST_F(TheExampleOnTheDesk, SwitchesTheCaptionsOffForAnotherSongAndAtItsEnd) {
  ASSERT_NO_FATAL_FAILURE(startPlayer({"--song", "4", "--paused", "--position", "12"}));
  const OverlaySnapshot wanted = snapshotOfPlayer();
  startCompanion(wanted);
  startOverlay();
  ASSERT_TRUE(waitFor([&] { return following(); })) << said();
  send(MusicCommand(now(), MusicCommand::Action::next, ""));
  EXPECT_TRUE(waitFor([&] { return snapshot() && !snapshot()->enabled; })) << said();
  EXPECT_TRUE(waitFor([&] { return statusIs("Following Music for Tessaly"); }));
  send(MusicCommand(now(), MusicCommand::Action::play, wanted.musicTitle, "", 12));
  EXPECT_TRUE(waitFor([&] { return following(); })) << said();
  companion->signal(SIGTERM);
  EXPECT_TRUE(waitFor([&] { return !companion->running(); }));
  EXPECT_EQ(companion->exitStatus(), 0) << said();
  EXPECT_FALSE(snapshot()->enabled);
  EXPECT_FALSE(fileExists(exchange / syncRequestFileName));
  EXPECT_TRUE(waitFor([&] { return statusIs("Waiting for fresh lyrics from Tessaly"); }));
}

TEST_F(TheExampleOnTheDesk, IsShortAndNeedsNothingButPython) {
  std::ifstream file(VELLORA_MINIMAL_COMPANION);
  std::size_t lines = 0;
  std::set<std::string> imports;
  for (std::string line; std::getline(file, line); ++lines) {
    if (line.starts_with("import ") || line.starts_with("from ")) imports.insert(line);
  }
  EXPECT_GT(lines, 20U);
  EXPECT_LT(lines, 80U);
  EXPECT_EQ(imports, (std::set<std::string>{"import json", "import os", "import signal",
                                            "import sys", "import time"}));
}

}  // namespace
}  // namespace vellora::e2e
