#include "base/files.h"
#include "e2e/desktop_settings.h"
#include "e2e/neighbours_desk.h"
#include "platform/linux/tray/tray_host.h"

namespace vellora::e2e {
namespace {

constexpr const char* inBackground = "Ready — bring Music to the front";

TEST_F(Neighbours, ThePlayerIsKilledAndStartedAgain) {
  ASSERT_NO_FATAL_FAILURE(follow());
  player->signal(SIGKILL);
  expectSoon(inBackground, [&] { return statusIs(inBackground); });
  ASSERT_NO_FATAL_FAILURE(startSong());
  expectCaptions();
}

TEST_F(Neighbours, ThePlayerHangs) {
  ASSERT_NO_FATAL_FAILURE(follow());
  hang(player->pid());
  expectWhatPlays();
  expectCaptions();
}

TEST_F(Neighbours, TheDisplayGoes) {
  ASSERT_NO_FATAL_FAILURE(follow());
  kill(sessionPiece("xvfb"), SIGKILL);
  expectSoon("the overlay has ended", [&] { return !overlay->running(); });
  EXPECT_EQ(overlay->exitStatus(), 3);
  EXPECT_TRUE(said().ends_with("Vellora: the display is gone, so the program ends.\n")) << said();
}

TEST_F(Neighbours, TheDisplayHangs) {
  ASSERT_NO_FATAL_FAILURE(follow());
  hang(sessionPiece("xvfb"));
  expectCaptions();
}

TEST_F(Neighbours, TheDisplayHangsAndTheOverlayIsAskedToEnd) {
  ASSERT_NO_FATAL_FAILURE(follow());
  const pid_t display = sessionPiece("xvfb");
  // The last that the overlay hears of the display is news that it asks it about.
  overlay->signal(SIGSTOP);
  outputOf(
      {"xprop", "-root", "-f", "_NET_ACTIVE_WINDOW", "32x", "-set", "_NET_ACTIVE_WINDOW", "0"});
  kill(display, SIGSTOP);
  overlay->signal(SIGCONT);
  const double begun = now();
  waitFor([&] { return now() - begun > 1; });
  overlay->signal(SIGTERM);
  const double asked = now();
  const bool ended = waitFor([&] { return !overlay->running(); });
  std::cout << "the overlay has ended: " << now() - asked << " s\n";
  kill(display, SIGCONT);
  ASSERT_TRUE(ended);
  EXPECT_EQ(overlay->exitStatus(), 0);
}

TEST_F(Neighbours, TheScreenIsResized) {
  ASSERT_NO_FATAL_FAILURE(follow());
  for (const char* size : {"1100x700", "1280x800"}) {
    outputOf({"xrandr", "--fb", size});
    screen = witness::openXScreen();  // which reads the size when it is opened
    const auto whole = screen->whole();
    ASSERT_TRUE(whole);
    ASSERT_EQ(std::to_string(whole->width) + "x" + std::to_string(whole->height), size);
    expectCaptions();
  }
}

// By a whole number, which makes every point larger, and by the fonts' size, which moves none.
TEST_F(Neighbours, TheDesktopIsScaled) {
  DesktopSettings settings;
  ASSERT_NO_FATAL_FAILURE(follow({"--geometry", "600x360"}));
  for (const auto& [scale, dotsPerInch] : {std::pair{2U, 96U}, {1U, 144U}, {2U, 144U}, {1U, 96U}}) {
    settings.set(scale, dotsPerInch);
    std::cout << "scale " << scale << ", " << dotsPerInch << " dots an inch: ";
    expectSoon("captions under their rows", [&] {
      const auto seen = seenPlayer();
      const auto alone = screen->windowAlone(windowClass());
      return seen && alone && witness::pixelsPerPoint(*seen, *alone) == scale && following() &&
             captionsRight();
    });
  }
}

TEST_F(Neighbours, TheCompositorIsKilledAndStartedAgain) {
  ASSERT_NO_FATAL_FAILURE(follow());
  // Nobody has the window's own picture later. It does not change.
  const auto alone = screen->windowAlone(windowClass());
  ASSERT_TRUE(alone);
  kill(sessionPiece("picom"), SIGKILL);
  expectSoon("captions under their rows", [&] {
    const auto seen = seenPlayer();
    const auto whole = screen->whole();
    return following() && seen && whole && !screen->windowAlone(windowClass()) &&
           witness::judgeCaptions(*seen, *snapshot(), *whole, *alone).right;
  });
  const Process picom({"picom", "--backend", "xrender", "--config", "/dev/null"},
                      folder / "picom.log");
  expectCaptions();
}

TEST_F(Neighbours, TheCompositorHangs) {
  ASSERT_NO_FATAL_FAILURE(follow());
  hang(sessionPiece("picom"));
  expectCaptions();
}

TEST_F(Neighbours, TheWindowManagerIsKilledAndStartedAgain) {
  ASSERT_NO_FATAL_FAILURE(follow());
  kill(sessionPiece("openbox"), SIGKILL);
  const Process openbox({"openbox", "--sm-disable"}, folder / "openbox.log");
  ASSERT_TRUE(waitFor([&] {
    return outputOf({"wmctrl", "-m"}).find("Openbox") != std::string::npos;
  }));
  outputOf({"wmctrl", "-x", "-a", windowClass()});
  expectCaptions();
}

TEST_F(Neighbours, TheWindowManagerHangs) {
  ASSERT_NO_FATAL_FAILURE(follow());
  hang(sessionPiece("openbox"));
  expectCaptions();
}

TEST_F(Neighbours, TheClockIsSetBackAndForth) {
  const OtherClock clock(folder);
  environment = clock.environment();
  ASSERT_NO_FATAL_FAILURE(follow());
  for (const int ahead : {-3600, -3590, -3600}) {
    clockAhead = ahead;
    clock.set(ahead);
    keepSnapshot(snapshotOfPlayer());
    keepSync();
    std::cout << "the clock is set to " << ahead << " s: ";
    expectCaptions();
  }
  EXPECT_TRUE(overlay->running());
}

TEST_F(Neighbours, TheTrayHostGoesComesBackAndHangs) {
  ASSERT_NO_FATAL_FAILURE(follow());
  const auto registered = [](const FakeTray& tray) {
    g_main_context_iteration(nullptr, FALSE);
    return !tray.registered.empty();
  };
  {
    const FakeTray first(connectToBus());
    ASSERT_TRUE(waitFor([&] { return registered(first); }));
  }
  const FakeTray second(connectToBus());
  expectSoon("the item is in the tray", [&] { return registered(second); });
  // From here on nobody runs the host's event loop.
  keepSnapshot(OverlaySnapshot());
  expectNoCaptions();
  keepSnapshot(snapshotOfPlayer());
  expectCaptions();
}

TEST_F(Neighbours, TheExchangeFolderIsRemovedAndMadeAgain) {
  ASSERT_NO_FATAL_FAILURE(follow());
  const OverlaySnapshot given = snapshotOfPlayer();
  dropSnapshot();
  dropSync();
  std::filesystem::remove_all(exchange);
  expectNoCaptions();
  std::filesystem::create_directory(exchange);
  useExchange(exchange);
  keepSnapshot(given);
  keepSync();
  expectCaptions();
  expectWhatPlays();
}

TEST_F(Neighbours, TheExchangeFolderIsReplaced) {
  ASSERT_NO_FATAL_FAILURE(follow());
  std::filesystem::rename(exchange, folder / "before");
  std::filesystem::create_directory(exchange);
  useExchange(exchange);
  keepSnapshot(snapshotOfPlayer());
  keepSync();
  expectCaptions();
  expectWhatPlays();
}

// Only the overlay finds it so.
TEST_F(Neighbours, TheExchangeFolderIsReadOnly) {
  ASSERT_NO_FATAL_FAILURE(startSong());
  keepSnapshot(snapshotOfPlayer());
  keepSync();
  startContained({"--ro-bind", exchange, exchange}, exchange);
  expectSoon("captions, the start included", [&] { return captionsRight(); });
  EXPECT_FALSE(status());
  EXPECT_EQ(said().find("rror"), std::string::npos) << said();
}

// The overlay's folder is a file system of one page, which its first file fills.
TEST_F(Neighbours, TheExchangeFolderIsFull) {
  ASSERT_NO_FATAL_FAILURE(startSong());
  keepSnapshot(snapshotOfPlayer());
  keepSync();
  const auto full = folder / "full" / "Vellora";
  std::filesystem::create_directories(full);
  startContained({"--size", "4096", "--tmpfs", full, "--symlink", exchange / "snapshot.json",
                  full / "snapshot.json", "--symlink", exchange / "sync.json", full / "sync.json"},
                 full);
  expectSoon("captions, the start included", [&] { return captionsRight(); });
  keepSnapshot(OverlaySnapshot());
  expectSoon("no captions", [&] { return nothingOverPlayer(); });
  keepSnapshot(snapshotOfPlayer());
  expectSoon("captions", [&] { return captionsRight(); });
  EXPECT_EQ(said().find("rror"), std::string::npos) << said();
}

TEST_F(Neighbours, TheAccessibilityBusIsKilled) {
  ASSERT_NO_FATAL_FAILURE(follow());
  const pid_t bus = accessibilityBus();
  ASSERT_GT(bus, 0);
  kill(sessionPiece("at-spi"), SIGKILL);
  kill(bus, SIGKILL);
  expectNoCaptions();
  // Its toolkit looks for the bus only when it starts.
  player->stop();
  ASSERT_NO_FATAL_FAILURE(startSong());
  expectCaptions();
}

TEST_F(Neighbours, TheAccessibilityBusHangs) {
  ASSERT_NO_FATAL_FAILURE(follow());
  hang(accessibilityBus());
  expectCaptions();
}

// The session bus, which the test ends, stops and starts anew at its address.
class SessionBusOnTheDesk : public Neighbours {
 protected:
  void SetUp() override {
    Neighbours::SetUp();
    // Without what only the first bus has: its unique number.
    const std::string address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    address_ = address.substr(0, address.find(','));
    setenv("DBUS_SESSION_BUS_ADDRESS", address_.c_str(), 1);
  }

  void startBus() {
    const std::string socket = address_.substr(address_.find('=') + 1);
    std::filesystem::remove(socket);
    const std::vector<std::string> daemon{"dbus-daemon", "--session", "--nofork", "--nopidfile",
                                          "--address=" + address_};
    newBus_ = std::make_unique<Process>(daemon, folder / "bus.log");
    ASSERT_TRUE(waitFor([&] { return std::filesystem::exists(socket); }));
  }
  // The process of the name's owner; 0 where it has none.
  pid_t ownerOf(const std::string& name) const {
    const std::string answer =
        outputOf({"gdbus", "call", "--session", "--dest", "org.freedesktop.DBus", "--object-path",
                  "/org/freedesktop/DBus", "--method",
                  "org.freedesktop.DBus.GetConnectionUnixProcessID", name});
    const std::size_t number = answer.find("uint32 ");
    return number == std::string::npos ? 0 : std::stoi(answer.substr(number + 7));
  }
  void expectHolders() {
    expectSoon("the URLs' name is back",
               [&] { return ownerOf("org.vellora.Vellora") == overlay->pid(); });
    const std::string item = "org.kde.StatusNotifierItem-" + std::to_string(overlay->pid()) + "-1";
    expectSoon("the tray's item is back", [&] { return ownerOf(item) == overlay->pid(); });
  }

 private:
  std::string address_;
  std::unique_ptr<Process> newBus_;
};

TEST_F(SessionBusOnTheDesk, IsKilledAndStartedAgain) {
  ASSERT_NO_FATAL_FAILURE(follow());
  const std::string before = said();
  kill(sessionPiece("dbus"), SIGKILL);
  expectNoCaptions();
  player->stop();  // it has lost its bus for good
  ASSERT_NO_FATAL_FAILURE(startBus());
  expectHolders();
  ASSERT_NO_FATAL_FAILURE(startSong());
  expectWhatPlays();
  expectCaptions();
  EXPECT_EQ(said(), before);  // no misleading line
}

TEST_F(SessionBusOnTheDesk, IsNewAndAUrlIsOpenedBeforeTheOverlayHasItsNameAgain) {
  keepSync();
  startOverlay();
  const auto owner = [this] { return ownerOf("org.vellora.Vellora"); };
  ASSERT_TRUE(waitFor([&] { return owner() == overlay->pid(); }));
  overlay->signal(SIGSTOP);
  kill(sessionPiece("dbus"), SIGKILL);
  ASSERT_NO_FATAL_FAILURE(startBus());
  const std::string url = "tessaly-overlay://x?snapshot=" + (exchange / "snapshot.json").string();
  Process opener({VELLORA_OPEN_PROGRAM, url}, folder / "open.log");
  // A second overlay would soon have it.
  EXPECT_FALSE(waitFor([&] { return owner() != 0; }, 2));
  overlay->signal(SIGCONT);
  EXPECT_TRUE(waitFor([&] { return !opener.running(); }));
  EXPECT_EQ(opener.exitStatus(), 0);
  EXPECT_EQ(owner(), overlay->pid());
}

TEST_F(SessionBusOnTheDesk, Hangs) {
  ASSERT_NO_FATAL_FAILURE(follow());
  const std::string before = said();
  hang(sessionPiece("dbus"));
  expectWhatPlays();
  expectCaptions();
  const std::string line = "Music script error: the session bus did not answer in time\n";
  EXPECT_TRUE(said().starts_with(before + line)) << said();  // once, and of no player
  EXPECT_EQ(said().rfind(line), before.size()) << said();
  EXPECT_EQ(said().find("a player did not"), std::string::npos) << said();
}

}  // namespace
}  // namespace vellora::e2e
