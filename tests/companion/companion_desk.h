#pragma once

#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "base/files.h"
#include "e2e/desk.h"
#include "exchange/records/json.h"

namespace vellora::e2e {

// The companion's program in the companion's place: the test itself only looks.
class CompanionOnTheDesk : public Desk {
 protected:
  void SetUp() override {
    Desk::SetUp();
    songs = folder / "songs";
    std::filesystem::create_directory(songs);
    const auto song = std::filesystem::path(VELLORA_SONGS) / "04-au-clair-de-la-lune";
    std::filesystem::copy_file(song / "lyrics.lrc", songs / "song.lrc");
    std::filesystem::copy_file(song / "translation.lrc", songs / "song.de.lrc");
    ASSERT_NO_FATAL_FAILURE(startPlayer({"--song", "4", "--position", "5"}));
  }
  void TearDown() override {
    if (companion) companion->stop();
    Desk::TearDown();
  }

  void startCompanion(std::vector<std::string> options = {}) {
    options.insert(options.begin(), {VELLORA_COMPANION, songs, "--exchange", exchange});
    companion =
        std::make_unique<Process>(std::move(options), folder / "companion.log", environment);
  }

  struct Answer {
    int status = -1;
    std::string text;  // standard output and standard error
  };
  // Runs a command of the program to its end.
  Answer run(std::vector<std::string> words) {
    words.insert(words.begin(), VELLORA_COMPANION);
    words.insert(words.end(), {"--exchange", exchange});
    const auto log = folder / ("command-" + std::to_string(++runs_) + ".log");
    Process process(words, log);
    waitFor([&] { return !process.running(); });
    std::ifstream file(log);
    std::ostringstream text;
    text << file.rdbuf();
    return {process.exitStatus().value_or(-1), text.str()};
  }

  std::optional<OverlaySnapshot> snapshot() const {
    const auto bytes = readWholeFile(exchange / "snapshot.json");
    return bytes ? decode<OverlaySnapshot>(*bytes) : std::nullopt;
  }
  // Whether a line of the running companion holds this.
  bool said(const std::string& part) const {
    std::ifstream file(folder / "companion.log");
    for (std::string line; std::getline(file, line);) {
      if (line.find(part) != std::string::npos) return true;
    }
    return false;
  }

  // Whether the captions come to stand as the companion's snapshot has them, which no test renews.
  bool captionsStandAsWritten() {
    return waitFor([&] {
      const auto written = snapshot();
      if (!written) return false;
      const auto seen = seenPlayer();
      const auto whole = screen->whole();
      const auto alone = screen->windowAlone("com.apple.Music");
      return seen && whole && alone && seenPlayer() == seen &&
             witness::judgeCaptions(*seen, *written, *whole, *alone).right;
    });
  }

  std::filesystem::path songs;
  std::unique_ptr<Process> companion;

 private:
  int runs_ = 0;
};

}  // namespace vellora::e2e
