#include <chrono>
#include <map>
#include <memory>
#include <string>
#include <thread>
#include <utility>

#include <gtest/gtest.h>

#include "contracts/folder_watch_contract.h"
#include "contracts/player_watch_contract.h"
#include "platform/linux/glib/private_bus.h"
#include "platform/linux/player/fake_player.h"

namespace vellora {
namespace {

class LinuxFolderWatch final : public FolderWatchSubject {
 public:
  std::unique_ptr<FolderWatch> watch(const std::filesystem::path& folder,
                                     std::vector<std::string_view> names) override {
    return makeFolderWatch(folder, std::move(names));
  }
};

class LinuxPlayerWatch final : public PlayerWatchSubject {
 public:
  PlayerWatch& watch() override { return *watch_; }

  void start(const std::string& name, const Playing& playing) override {
    FakePlayer::Setup setup;
    setup.busName = busName(name);
    setup.desktopEntry = name;
    setup.status = playing.plays ? "Playing" : "Paused";
    setup.position = static_cast<std::int64_t>(playing.position * 1e6);
    setup.tracks = {{"/track/0", playing.title, {playing.artist}, playing.album}};
    players_.emplace(name, std::make_unique<FakePlayer>(setup));
  }
  void pause(const std::string& name) override {
    const auto control = bus_.connect();
    const GVariantPtr paused(
        g_dbus_connection_call_sync(control.get(), busName(name).c_str(), "/org/mpris/MediaPlayer2",
                                    "org.mpris.MediaPlayer2.Player", "Pause", nullptr, nullptr,
                                    G_DBUS_CALL_FLAGS_NONE, 20'000, nullptr, nullptr));
    EXPECT_TRUE(paused);
  }
  void hang(const std::string& name) override { players_.at(name)->stop(); }
  void wake(const std::string& name) override { players_.at(name)->wake(); }
  void end(const std::string& name) override { players_.at(name)->end(); }
  // Long enough that an answer comes while the looks' own time, which runs faster, still waits.
  void settle() override { std::this_thread::sleep_for(std::chrono::milliseconds(20)); }

 private:
  static std::string busName(const std::string& name) { return "org.mpris.MediaPlayer2." + name; }

  PrivateBus bus_;
  std::map<std::string, std::unique_ptr<FakePlayer>> players_;
  const std::unique_ptr<PlayerWatch> watch_ = makePlayerWatch();
};

}  // namespace

VELLORA_INSTANTIATE(Linux, FolderWatch, LinuxFolderWatch);
VELLORA_INSTANTIATE(Linux, PlayerWatch, LinuxPlayerWatch);

}  // namespace vellora
