// The program in a pseudo-terminal; the test is the overlay.
#include <chrono>

#include <signal.h>

#include "base/files.h"
#include "companion/song_folder.h"
#include "companion/terminal.h"
#include "exchange/records/json.h"

namespace vellora::companion {
namespace {

constexpr const char* left = "\x1bOD";
constexpr const char* right = "\x1bOC";
constexpr const char* up = "\x1bOA";
constexpr const char* down = "\x1bOB";

double now() {
  return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
}

class TerminalView : public SongFolder {
 protected:
  void SetUp() override {
    SongFolder::SetUp();
    exchange = folder / "Vellora";
    std::filesystem::create_directory(exchange);
    put("songs/River Band - Night Drive.lrc",
        "[length:01:40]\n[00:00.00]First line\n[00:10.00]夜の道\n[00:20.00]Third line\n");
    put("songs/River Band - Night Drive.de.lrc", "[00:00.00]Erste\n[00:10.00]Straße bei Nacht\n");
    publish({0, "Night Drive", "River Band", "Album", 12, false});
  }
  void TearDown() override {
    terminal.reset();  // it writes into the folder as long as it runs
    SongFolder::TearDown();
  }
  void start(int rows = 24, int columns = 90) {
    terminal = std::make_unique<Terminal>(
        std::vector<std::string>{"/usr/bin/env", "XDG_CONFIG_HOME=" + folder.string(),
                                 "XDG_STATE_HOME=" + (folder / "state").string(),
                                 "DBUS_SESSION_BUS_ADDRESS=", "XDG_RUNTIME_DIR=" + folder.string(),
                                 VELLORA_COMPANION, folder / "songs", "--exchange", exchange},
        rows, columns);
    // An overlay says again what it has said before.
    ASSERT_TRUE(terminal->waitFor(
        [this] { return std::filesystem::exists(exchange / syncRequestFileName); }));
    ASSERT_TRUE(writeFileAtomically(exchange / statusFileName,
                                    *encode(OverlayStatus("Following Music • 2 translated rows"))));
  }
  // Publishes the track once more every half second while it waits.
  bool waitFor(const std::function<bool()>& condition) {
    return terminal->waitFor([&] {
      if (now() - published > 0.5) publish(track);
      return condition();
    });
  }
  void publish(NowPlayingTrack next) {
    track = std::move(next);
    track.updatedAt = published = now();
    ASSERT_TRUE(writeFileAtomically(exchange / nowPlayingFileName, *encode(track)));
  }
  std::optional<OverlaySnapshot> snapshot() const {
    const auto bytes = readWholeFile(exchange / "snapshot.json");
    return bytes ? decode<OverlaySnapshot>(*bytes) : std::nullopt;
  }
  // Takes the command that comes, as the overlay does.
  std::optional<MusicCommand> takeCommand() {
    std::optional<MusicCommand> command;
    waitFor([&] {
      const auto bytes = readWholeFile(exchange / commandFileName);
      if (bytes) command = decode<MusicCommand>(*bytes);
      return command.has_value();
    });
    removeFile(exchange / commandFileName);
    return command;
  }

  std::filesystem::path exchange;
  std::unique_ptr<Terminal> terminal;
  NowPlayingTrack track;
  double published = 0;
};

TEST_F(TerminalView, ShowsSongLinePlaceAndStatus) {
  start();
  ASSERT_TRUE(waitFor([&] { return terminal->shows("q quit\n"); })) << terminal->screen();
  EXPECT_EQ(terminal->row(0), "Night Drive — River Band");
  EXPECT_EQ(terminal->row(1).substr(0, 9), "⏸ 0:12 ") << terminal->row(1);
  EXPECT_TRUE(terminal->row(1).ends_with(" 1:40")) << terminal->row(1);
  EXPECT_TRUE(
      terminal->shows("\n  First line\n    Erste\n› 夜の道\n    Straße bei Nacht\n  Third line\n"))
      << terminal->screen();
  EXPECT_TRUE(
      waitFor([&] { return terminal->shows("overlay: Following Music • 2 translated rows\n"); }));
  EXPECT_TRUE(waitFor([&] { return terminal->shows("captions on  size 26  offset +0\n"); }));
  EXPECT_TRUE(terminal->taken());
}

TEST_F(TerminalView, SaysWhatToDoWhereNothingPlays) {
  removeFile(exchange / nowPlayingFileName);
  start();
  ASSERT_TRUE(terminal->waitFor([&] { return terminal->shows("q quit\n"); }));
  EXPECT_TRUE(waitFor([&] { return terminal->shows("Waiting for a player, or the overlay."); }));
  EXPECT_TRUE(waitFor([&] {
    return terminal->shows("vellora --snapshot " + (exchange / "snapshot.json").string());
  }));
}

TEST_F(TerminalView, KeysChangeTheCaptionsInTheSnapshot) {
  start();
  ASSERT_TRUE(waitFor([&] { return terminal->shows("夜の道"); }));
  terminal->type(std::string("++-") + up + up + up + down);
  ASSERT_TRUE(waitFor([&] { return terminal->shows("captions on  size 27  offset -4\n"); }))
      << terminal->screen();
  EXPECT_TRUE(waitFor([&] {
    const auto written = snapshot();
    return written && written->fontSize == 27 && written->verticalOffset == -4 && written->enabled;
  }));
  terminal->type("c");
  EXPECT_TRUE(waitFor([&] { return terminal->shows("captions off"); }));
  EXPECT_TRUE(waitFor([&] { return snapshot() && !snapshot()->enabled; }));
  terminal->type("q");
  EXPECT_TRUE(waitFor([&] { return terminal->shows(": font-size = 27\n"); }))
      << "how to keep it: " << terminal->screen();
  EXPECT_TRUE(waitFor([&] { return terminal->shows(": offset = -4\n"); })) << terminal->screen();
}

TEST_F(TerminalView, KeysChooseOtherLyricsAndTranslations) {
  put("songs/River Band - Night Drive.fr.lrc", "[00:00.00]Première\n[00:10.00]Route de nuit\n");
  put("songs/live/River Band - Night Drive.lrc", "[00:10.00]On the road\n");
  start();
  ASSERT_TRUE(waitFor([&] { return terminal->shows("› 夜の道\n    Straße bei Nacht\n"); }));
  terminal->type("t");
  EXPECT_TRUE(waitFor([&] {
    return terminal->shows("› 夜の道\n    Route de nuit\n") &&
           terminal->shows("translation 2 of 3: fr\n");
  })) << terminal->screen();
  EXPECT_TRUE(waitFor([&] {
    const auto written = snapshot();
    return written && written->lines.size() > 1 && written->lines[1].translation == "Route de nuit";
  }));
  terminal->type("t");
  EXPECT_TRUE(waitFor([&] { return terminal->shows("› 夜の道\n  Third line\n"); }))
      << terminal->screen();
  terminal->type("T");
  EXPECT_TRUE(waitFor([&] { return terminal->shows("Route de nuit"); }));
  terminal->type("f");
  EXPECT_TRUE(waitFor([&] {
    return terminal->shows("› On the road\n") && terminal->shows("lyrics 2 of 2: River Band");
  })) << terminal->screen();
  publish({0, "Other", "River Band", "Album", 12, false});
  EXPECT_TRUE(waitFor([&] { return !terminal->shows("lyrics 2 of 2"); })) << terminal->screen();
  publish({0, "Night Drive", "River Band", "Album", 12, false});
  EXPECT_TRUE(waitFor([&] { return terminal->shows("› On the road\n"); })) << terminal->screen();
  terminal->type("F");
  EXPECT_TRUE(waitFor([&] { return terminal->shows("› 夜の道\n    Route de nuit\n"); }));
  terminal->type("q");
  EXPECT_TRUE(waitFor([&] { return terminal->shows(": language = fr\n"); }))
      << "how to keep it: " << terminal->screen();
}

TEST_F(TerminalView, KeysShiftTheLyricsAndThatIsKeptForTheSong) {
  start();
  ASSERT_TRUE(waitFor([&] { return terminal->shows("› 夜の道"); }));
  terminal->type(std::string(21, ']'));
  EXPECT_TRUE(waitFor([&] {
    return terminal->shows("› First line") && terminal->shows("  lyrics 2.1 s later\n");
  })) << terminal->screen();
  EXPECT_EQ(terminal->row(1).substr(0, 9), "⏸ 0:12 ") << "the place in the song is the player's";

  publish({0, "Other", "River Band", "Album", 12, false});
  ASSERT_TRUE(waitFor([&] {
    return terminal->row(0) == "Other — River Band" && !terminal->shows("First line") &&
           !terminal->shows("later");
  })) << terminal->screen();
  publish({0, "Night Drive", "River Band", "Album", 12, false});
  EXPECT_TRUE(waitFor([&] {
    return terminal->shows("› First line") && terminal->shows("  lyrics 2.1 s later\n");
  })) << terminal->screen();

  terminal->type("[q");
  ASSERT_TRUE(waitFor([&] { return terminal->exitStatus().has_value(); }));
  start();
  EXPECT_TRUE(waitFor([&] {
    return terminal->shows("› 夜の道") && terminal->shows("  lyrics 2 s later\n");
  })) << terminal->screen();
}

TEST_F(TerminalView, SaysWhereAShiftCannotBeKept) {
  put("state", "a file in the folder's place");
  start();
  ASSERT_TRUE(waitFor([&] { return terminal->shows("› 夜の道"); }));
  terminal->type("]");
  EXPECT_TRUE(waitFor([&] {
    return terminal->shows("lyrics 0.1 s later\n") &&
           terminal->shows("the shift of the lyrics cannot be kept");
  })) << terminal->screen();
}

TEST_F(TerminalView, KeysSendCommandsAndTellTheirEffect) {
  start();
  ASSERT_TRUE(waitFor([&] { return terminal->shows("夜の道"); }));
  terminal->type(" ");
  auto command = takeCommand();
  ASSERT_TRUE(command);
  EXPECT_EQ(command->action, MusicCommand::Action::playPause);
  publish({0, "Night Drive", "River Band", "Album", 12, true});
  EXPECT_TRUE(waitFor([&] {
    return terminal->shows("\nplaying “Night Drive” by River Band at 0:12\n");
  })) << terminal->screen();

  publish({0, "Night Drive", "River Band", "Album", 30, false});
  ASSERT_TRUE(waitFor([&] { return terminal->shows("⏸ 0:30"); }));
  terminal->type(right);
  command = takeCommand();
  ASSERT_TRUE(command);
  EXPECT_EQ(command->action, MusicCommand::Action::seek);
  EXPECT_NEAR(command->position, 35, 0.1);
  publish({0, "Night Drive", "River Band", "Album", 35, true});

  terminal->type("n");
  command = takeCommand();
  ASSERT_TRUE(command);
  EXPECT_EQ(command->action, MusicCommand::Action::next);
  publish({0, "Other", "Band", "Album", 0, true});
  EXPECT_TRUE(waitFor([&] { return terminal->shows("No lyrics of this song in the folder"); }));

  terminal->type(left);
  command = takeCommand();
  ASSERT_TRUE(command);
  EXPECT_EQ(command->action, MusicCommand::Action::seek);
  EXPECT_EQ(command->position, 0) << "not before the begin";
  publish({0, "Other", "Band", "Album", 0.1, true});

  terminal->type("p");
  command = takeCommand();
  ASSERT_TRUE(command);
  EXPECT_EQ(command->action, MusicCommand::Action::previous);
}

TEST_F(TerminalView, FollowsTheTerminalsSize) {
  start();
  ASSERT_TRUE(waitFor([&] { return terminal->shows("夜の道"); }));
  terminal->resize(8, 20);
  EXPECT_TRUE(waitFor([&] { return terminal->row(0) == "Night Drive — Rive…"; }))
      << terminal->screen();
  for (const auto& [rows, columns] : {std::pair(1, 1), std::pair(2, 3), std::pair(50, 4)}) {
    terminal->resize(rows, columns);
    waitFor([&] { return now() - published < 0.05; });
    ASSERT_FALSE(terminal->exitStatus()) << rows << "x" << columns;
  }
  terminal->resize(30, 100);
  EXPECT_TRUE(waitFor([&] { return terminal->row(0) == "Night Drive — River Band"; }))
      << terminal->screen();
}

TEST_F(TerminalView, TextsFromOutsideCannotSteerTheTerminal) {
  put("songs/Band55H - Evil0x.lrc",
      "[00:00.00]a\x1b[2J\x1b[1;1Hevil\x07\xC2\x9B"
      "31m\n");
  publish({0, "Evil\x1b]0;x\x07", "Band\x1b[5;5H", "", 1, false});
  start();
  ASSERT_TRUE(writeFileAtomically(exchange / statusFileName, *encode(OverlayStatus("a\x1b[2Jb"))));
  ASSERT_TRUE(waitFor([&] { return terminal->shows("a [2J [1;1Hevil 31m"); }))
      << terminal->screen();
  EXPECT_EQ(terminal->row(0), "Evil ]0;x  — Band [5;5H");
  EXPECT_TRUE(waitFor([&] { return terminal->shows("overlay: a [2Jb\n"); }));
}

TEST_F(TerminalView, LeavesTheTerminalAsItWas) {
  start();
  ASSERT_TRUE(waitFor([&] { return terminal->shows("夜の道"); }));
  terminal->type("q");
  ASSERT_TRUE(waitFor([&] { return terminal->exitStatus().has_value(); }));
  EXPECT_EQ(terminal->exitStatus(), 0);
  EXPECT_TRUE(terminal->waitFor([&] { return !terminal->taken(); }));
  EXPECT_FALSE(snapshot()->enabled);
}

TEST_F(TerminalView, ControlCEndsIt) {
  start();
  ASSERT_TRUE(waitFor([&] { return terminal->shows("夜の道"); }));
  terminal->type("\x03");
  ASSERT_TRUE(waitFor([&] { return terminal->exitStatus().has_value(); }));
  EXPECT_EQ(terminal->exitStatus(), 0);
  EXPECT_FALSE(snapshot()->enabled);
}

TEST_F(TerminalView, EndsWhenTheTerminalGoesAway) {
  start();
  ASSERT_TRUE(waitFor([&] { return terminal->shows("夜の道"); }));
  terminal->hangUp();
  EXPECT_TRUE(terminal->waitFor([&] { return terminal->exitStatus().has_value(); }));
  EXPECT_FALSE(snapshot()->enabled);
}

}  // namespace
}  // namespace vellora::companion
