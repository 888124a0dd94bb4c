#pragma once

#include <algorithm>
#include <filesystem>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "controller/overlay_delegate.h"
#include "exchange/records/json.h"
#include "support/fake_platform.h"
#include "support/temporary_folder.h"

namespace vellora {

// The status file's content for each status line, as Tessaly reads it.
struct StatusFiles {
  static constexpr char following[] =
      R"({"message":"Following Music for Tessaly","stopped":false})";
  static constexpr char waiting[] =
      R"({"message":"Waiting for fresh lyrics from Tessaly","stopped":false})";
  static constexpr char allow[] =
      R"({"message":"Allow Vellora in System Settings → Privacy & Security → Accessibility",)"
      R"("stopped":false})";
  static constexpr char ready[] =
      R"({"message":"Ready — bring Music to the front","stopped":false})";
  static constexpr char oneRow[] =
      R"({"message":"Following Music • 1 translated rows","stopped":false})";
  static constexpr char noLyrics[] =
      R"({"message":"Open Music’s Now Playing view and show Lyrics","stopped":false})";
  static constexpr char stopped[] = R"({"message":"Overlay stopped","stopped":true})";
};

// A controller over fakes, with an exchange folder of its own. At the start the folder is empty,
// the program is trusted and nothing is in front.
class ControllerTest : public testing::Test {
 protected:
  static constexpr std::int32_t musicPid = 4711;

  ControllerTest() { build(snapshotPath()); }

  void build(std::optional<std::filesystem::path> location) {
    controller = std::make_shared<OverlayDelegate>(std::move(location), platform, output);
  }

  std::filesystem::path snapshotPath() const { return folder / "lyrics.json"; }
  double now() const { return platform.clock->now(); }

  // Files from Tessaly, `age` seconds old.
  void writeSnapshot(double age = 0, bool enabled = true) {
    write(snapshotPath(), OverlaySnapshot{1,
                                          now() - age,
                                          enabled,
                                          "Night Drive",
                                          "River Band",
                                          32,
                                          0,
                                          {{"Hello world", "Hallo Welt"}}});
  }
  void writeSync(double age = 0) { write(folder / "sync.json", SyncRequest{now() - age}); }
  void writeCommand(double age = 0, MusicCommand::Action action = MusicCommand::Action::next) {
    write(folder / "command.json", MusicCommand(now() - age, action, "Song"));
  }
  template <typename Record>
  static void write(const std::filesystem::path& path, const Record& record) {
    writeText(path, encode(record).value());
  }

  std::filesystem::path makeVelloraFolder(std::string_view parent) {
    const auto path = folder / parent / "Vellora";
    std::filesystem::create_directories(path);
    return path;
  }

  bool exists(std::string_view name) const { return std::filesystem::exists(folder / name); }
  std::string statusFile() const { return readText(folder / "status.json"); }
  std::string nowPlayingFile() const { return readText(folder / "nowplaying.json"); }

  void bringToFront(std::optional<std::string> identifier, std::int32_t pid = musicPid) {
    platform.workspace->frontmost =
        std::make_shared<FakeRunningApplication>(std::move(identifier), pid);
  }
  void bringMusicToFront() { bringToFront("com.apple.Music"); }

  // A player's window that shows one lyric row of the snapshot's song.
  void openLyrics() {
    auto title = fakeElement();
    title->identifier("Music.nowPlaying.title-Music.nowPlaying.subtitle")
        .description("Night Drive — River Band");
    auto row = fakeElement();
    row->role("AXButton").title("Hello world").frame({620, 220, 360, 60});
    auto lyrics = fakeElement();
    lyrics->role("AXScrollArea").description("Lyrics").frame({600, 100, 580, 650}).children({row});
    auto window = fakeElement();
    window->role("AXWindow").frame({0, 30, 1200, 800}).children({title, lyrics});
    auto application = fakeElement();
    application->windows({window});
    platform.accessibility->applications[musicPid] = application;
  }

  // What the player answers when it is asked what it plays.
  void play(std::string title) {
    platform.scripting->standing =
        FakeMusicScripting::reply(std::move(title) + "|Artist|Album|12500|playing");
  }

  // Ticks and carries a reading that was begun through to its end.
  void tickAndRead() {
    controller->tick();
    platform.app.runBackground();
    platform.app.runMain();
  }

  std::size_t count(std::string_view line) const {
    return static_cast<std::size_t>(std::ranges::count(platform.log, line));
  }
  bool panelVisible() const { return platform.panel->visible; }

  TemporaryFolder folder;
  FakePlatform platform;
  std::ostringstream output;
  std::shared_ptr<OverlayDelegate> controller;
};

}  // namespace vellora
