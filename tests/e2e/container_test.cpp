// Captions over a player in a container: with process numbers of its own, and with a proxy between
// it and the buses, as Flatpak starts programs.
#include <filesystem>
#include <fstream>

#include "base/files.h"
#include "e2e/desk.h"

namespace vellora::e2e {
namespace {

class ContainedPlayer : public Desk {
 protected:
  void SetUp() override {
    ASSERT_NO_FATAL_FAILURE(Desk::SetUp());
    Process trial({"bwrap", "--unshare-pid", "--dev-bind", "/", "/", "true"}, folder / "trial.log");
    ASSERT_TRUE(waitFor([&] { return !trial.running(); }));
    ASSERT_EQ(trial.exitStatus(), 0)
        << "this system makes no process namespaces (package bubblewrap; in a container, one that "
           "may make others)";
  }

  // bwrap with the system's folders in a root of its own, which is marked as Flatpak marks it.
  std::vector<std::string> flatpak(std::vector<std::string> command) const {
    std::ofstream(folder / "flatpak-info") << "[Application]\nname=org.example.Tunes\n"
                                              "[Instance]\ninstance-id=4711\n";
    std::vector<std::string> all{"bwrap", "--unshare-pid", "--die-with-parent"};
    for (const auto& entry : std::filesystem::directory_iterator("/")) {
      const std::string path = entry.path();
      if (entry.is_symlink()) {
        all.insert(all.end(), {"--symlink", std::filesystem::read_symlink(path), path});
      } else if (entry.is_directory() && path != "/proc") {
        all.insert(all.end(), {"--dev-bind", path, path});
      }
    }
    all.insert(all.end(),
               {"--proc", "/proc", "--ro-bind", folder / "flatpak-info", "/.flatpak-info"});
    all.insert(all.end(), command.begin(), command.end());
    return all;
  }

  void follow(std::vector<std::string> command) {
    for (const char* option : {"--song", "1", "--paused", "--position", "12"}) {
      command.emplace_back(option);
    }
    player = std::make_unique<Process>(std::move(command), folder / "player.log", environment);
    ASSERT_TRUE(waitFor([&] { return seenPlayer() && !seenPlayer()->rows.empty(); }));
    keepSnapshot(snapshotOfPlayer());
    startOverlay();
    EXPECT_TRUE(waitFor([&] { return following() && captionsRight(); }));
  }
};

TEST_F(ContainedPlayer, IsFollowedByItsProcessThoughItNamesAnother) {
  follow(
      {"bwrap", "--unshare-pid", "--die-with-parent", "--dev-bind", "/", "/", VELLORA_DEMO_PLAYER});
}

TEST_F(ContainedPlayer, IsFollowedByItsContainerBehindAProxy) {
  const std::string socket = folder.string() + "-accessibility";
  std::string bus =
      outputOf({"gdbus", "call", "--session", "--dest", "org.a11y.Bus", "--object-path",
                "/org/a11y/bus", "--method", "org.a11y.Bus.GetAddress"});
  bus = bus.substr(2, bus.rfind('\'') - 2);  // ('unix:…',)
  Process proxy(flatpak({"xdg-dbus-proxy", bus, socket}), folder / "proxy.log");
  ASSERT_TRUE(waitFor([&] { return fileExists(socket); })) << bus;
  follow(flatpak({"env", "AT_SPI_BUS_ADDRESS=unix:path=" + socket, VELLORA_DEMO_PLAYER}));
  removeFile(socket);
}

}  // namespace
}  // namespace vellora::e2e
