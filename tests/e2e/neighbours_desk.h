#pragma once

#include <fstream>
#include <sstream>

#include <signal.h>

#include "e2e/desk.h"
#include "e2e/neighbours.h"
#include "platform/linux/glib/glib_ptr.h"

namespace vellora::e2e {

// What a person sees when what stands around the overlay goes, hangs or comes back, and how long
// that takes. The seconds are printed; docs/reliability.md has them.
class Neighbours : public Desk {
 protected:
  void SetUp() override {
    ASSERT_NO_FATAL_FAILURE(Desk::SetUp());
    environment.erase("VELLORA_PLAYER_PATIENCE");  // as people have it
  }
  void startSong(const std::vector<std::string>& options = {}) {
    std::vector<std::string> all{"--song", "1", "--paused", "--position", "12"};
    all.insert(all.end(), options.begin(), options.end());
    startPlayer(std::move(all));
  }
  void follow(const std::vector<std::string>& playerOptions = {}) {
    ASSERT_NO_FATAL_FAILURE(startSong(playerOptions));
    keepSnapshot(snapshotOfPlayer());
    keepSync();
    startOverlay();
    ASSERT_TRUE(waitFor([&] { return following() && captionsRight(); })) << "no captions";
    place_ = seenPlayer()->viewport;
  }

  void expectSoon(const std::string& sight, const std::function<bool()>& condition) {
    const double begun = now();
    const bool seen = waitFor(condition);
    const auto picture = seen ? std::nullopt : screen->whole();
    if (picture) picture->writePng(folder / "unseen.png");
    ASSERT_TRUE(seen) << sight;
    std::cout << sight << ": " << now() - begun << " s\n";
  }
  void expectCaptions() {
    expectSoon("captions under their rows", [&] { return following() && captionsRight(); });
  }
  // Where the lyrics are, going by the screen alone.
  bool nothingOverLyrics() const {
    const auto whole = screen->whole();
    const auto alone = screen->windowAlone(windowClass());
    return whole && alone && witness::difference(*whole, *alone, place_).changed == 0;
  }
  void expectNoCaptions() {
    expectSoon("no captions", [&] { return nothingOverLyrics(); });
  }
  void expectWhatPlays() {
    const double begun = now();
    expectSoon("what plays is told",
               [&] { return nowPlaying() && nowPlaying()->updatedAt > begun; });
  }
  // Lets a neighbour hang for so long that it is noticed by everybody, and go on.
  void hang(pid_t neighbour) {
    ASSERT_GT(neighbour, 0);
    kill(neighbour, SIGSTOP);
    const double begun = now();
    waitFor([&] { return now() - begun > 2; });
    kill(neighbour, SIGCONT);
  }
  // Starts the overlay with a view of its own of the file system.
  void startContained(const std::vector<std::string>& mounts, const std::filesystem::path& given) {
    std::vector<std::string> command{"bwrap", "--die-with-parent", "--dev-bind", "/", "/"};
    command.insert(command.end(), mounts.begin(), mounts.end());
    command.insert(command.end(), {VELLORA_PROGRAM, "--snapshot", given / "snapshot.json"});
    overlay = std::make_unique<Process>(command, folder / "overlay.log");
  }
  static GObjectPtr<GDBusConnection> connectToBus() {
    return GObjectPtr<GDBusConnection>(g_dbus_connection_new_for_address_sync(
        std::getenv("DBUS_SESSION_BUS_ADDRESS"),
        GDBusConnectionFlags(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                             G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, nullptr));
  }
  // The daemon of the accessibility bus.
  static pid_t accessibilityBus() {
    const std::string parent = std::to_string(sessionPiece("at-spi"));
    const std::string ids = outputOf({"pgrep", "-P", parent, "dbus-daemon"});
    return ids.empty() ? 0 : std::stoi(ids);
  }
  std::string said() const {
    std::ostringstream text;
    text << std::ifstream(folder / "overlay.log").rdbuf();
    return text.str();
  }

 private:
  Rect place_;
};

}  // namespace vellora::e2e
