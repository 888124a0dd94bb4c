// The connection to compositors that do not answer as they should.
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <string>

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/linux/wayland/panel_desk.h"
#include "platform/linux/wayland/session/wayland_session.h"
#include "platform/linux/wayland/wayland_window_system.h"
#include "support/temporary_folder.h"

namespace vellora {
namespace {

// A socket to which programs connect and on which nobody speaks.
class SilentCompositor {
 public:
  explicit SilentCompositor(int backlog) : fd_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    const sockaddr_un address = addressOf(path());
    EXPECT_EQ(::bind(fd_, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(::listen(fd_, backlog), 0);
  }
  ~SilentCompositor() { ::close(fd_); }
  SilentCompositor(const SilentCompositor&) = delete;
  SilentCompositor& operator=(const SilentCompositor&) = delete;

  std::string path() const { return folder_.path() / "wayland-9"; }
  int fd() const { return fd_; }

  static sockaddr_un addressOf(const std::string& path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    return address;
  }

 private:
  TemporaryFolder folder_;
  int fd_;
};

// Two seconds are its patience; a slow machine may take longer for the rest.
void expectNoDisplaySoon(const std::string& name) {
  const auto begin = std::chrono::steady_clock::now();
  const WaylandSession session(name.c_str());
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(20));
  EXPECT_FALSE(session.present());
  EXPECT_FALSE(session.answered());
  EXPECT_TRUE(session.layout().outputs.empty());
}

TEST(WaylandSessionTest, WithoutACompositorThereIsNone) {
  EXPECT_FALSE(WaylandSession(nullptr).present());
  expectNoDisplaySoon("");
  expectNoDisplaySoon("wayland-that-is-not-there");
  expectNoDisplaySoon("/nonexistent/" + std::string(200, 'x'));
  setenv("XDG_RUNTIME_DIR", "not/whole", 1);
  expectNoDisplaySoon("wayland-1");
  unsetenv("XDG_RUNTIME_DIR");
  expectNoDisplaySoon("wayland-1");
}

TEST(WaylandSessionTest, ACompositorThatNeverAnswersIsGivenUp) {
  const SilentCompositor compositor(8);
  expectNoDisplaySoon(compositor.path());
}

TEST(WaylandSessionTest, ACompositorThatTakesNobodyInIsGivenUp) {
  const SilentCompositor compositor(0);
  const sockaddr_un address = SilentCompositor::addressOf(compositor.path());
  const int waiting = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  ASSERT_EQ(::connect(waiting, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  expectNoDisplaySoon(compositor.path());
  ::close(waiting);
}

TEST(WaylandSessionTest, ACompositorThatTalksNonsenseIsNone) {
  const SilentCompositor compositor(8);
  const pid_t child = ::fork();
  if (child == 0) {
    const int peer = ::accept(compositor.fd(), nullptr, nullptr);
    const std::string nonsense(4096, '\x7f');
    if (::write(peer, nonsense.data(), nonsense.size()) < 0) ::_exit(1);
    ::sleep(60);
    ::_exit(0);
  }
  expectNoDisplaySoon(compositor.path());
  ::kill(child, SIGKILL);
  ::waitpid(child, nullptr, 0);
}

TEST(WaylandSessionTest, TellsOnceThatTheCompositorHasGone) {
  WaylandWindowSystem system(std::make_shared<WaylandSession>(std::getenv("WAYLAND_DISPLAY")),
                             nullptr);
  ASSERT_TRUE(system.present());
  int times = 0;
  system.whenLost([&] { ++times; });
  runLoopDry();
  EXPECT_EQ(times, 0);
  ::kill(Sway().pid(), SIGKILL);
  EXPECT_TRUE(runLoopUntil([&] { return times > 0; }));
  runLoopDry();
  EXPECT_EQ(times, 1);
  EXPECT_FALSE(system.present());
}

TEST(WaylandSessionTest, WithoutALocatorNothingIsInFront) {
  WaylandWindowSystem system(std::make_shared<WaylandSession>(std::getenv("WAYLAND_DISPLAY")),
                             nullptr);
  const auto workspace = system.makeWorkspace({}, nullptr);
  EXPECT_EQ(workspace->frontmostApplication(), nullptr);
  EXPECT_TRUE(workspace->runningApplications("com.apple.Music").empty());
  EXPECT_EQ(workspace->primaryScreenHeight(), 800);
  EXPECT_EQ(workspace->mainScreenScale(), 1);
}

}  // namespace
}  // namespace vellora
