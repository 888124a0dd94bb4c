#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/utsname.h>
#include <unistd.h>

#include "platform/linux/x11/screen_metrics.h"
#include "platform/linux/x11/window_process.h"
#include "platform/linux/x11/x_session.h"
#include "platform/linux/x11/x_workspace.h"
#include "platform/linux/x11/xsettings.h"
#include "support/temporary_folder.h"
#include "support/x_client.h"
#include "support/x_server.h"

namespace vellora {
namespace {

using std::string_literals::operator""s;

std::string thisHost() {
  utsname names{};
  uname(&names);
  return names.nodename;
}

// One integer setting as a settings manager on a little-endian machine publishes it.
std::string littleEndianSetting(const std::string& name, char value) {
  std::string bytes =
      "\0\0\0\0"s
      "\7\0\0\0"s
      "\1\0\0\0"s
      "\0\0"s;
  bytes += static_cast<char>(name.size());
  bytes += '\0';
  bytes += name;
  while (bytes.size() % 4 != 0) bytes += '\0';
  return bytes.append("\7\0\0\0"s).append(1, value).append("\0\0\0"s);
}

class WorkspaceTest : public testing::Test {
 protected:
  WorkspaceTest() {
    unsetenv("GDK_SCALE");
    session = std::make_shared<XSession>(server.display().c_str());
    workspace = std::make_unique<XWorkspace>(session);
  }

  // A window with the properties of a program, as a toolkit sets them.
  xcb_window_t makeProgram(std::uint32_t process, const std::string& wmClass) {
    const xcb_window_t window = client.makeWindow({10, 10, 100, 100}, 0xffffff);
    client.setNumber(window, "_NET_WM_PID", process);
    client.setText(window, "WM_CLASS", wmClass);
    client.setText(window, "WM_CLIENT_MACHINE", thisHost());
    return window;
  }

  // The test stands in for the window manager.
  void setActive(xcb_window_t window) {
    client.setWindows(client.root(), "_NET_ACTIVE_WINDOW", {window});
  }

  // How many requests the session sends while `action` runs.
  unsigned requestsDuring(const std::function<void()>& action) {
    const unsigned before = xcb_no_operation(session->connection()).sequence;
    action();
    return xcb_no_operation(session->connection()).sequence - before - 1;
  }

  XServer server;
  XClient client{server.display()};
  std::shared_ptr<XSession> session;
  std::unique_ptr<Workspace> workspace;
};

TEST(BundleIdentifierTest, IsTheFirstPartThatHasTheFormOfAnApplicationIdentifier) {
  EXPECT_EQ(bundleIdentifierOf("", "music\0com.apple.Music\0"s), "com.apple.Music");
  EXPECT_EQ(bundleIdentifierOf("", "com.apple.Music\0Music\0"s), "com.apple.Music");
  EXPECT_EQ(bundleIdentifierOf("com.apple.Music", "music\0Music\0"s), "com.apple.Music");
  EXPECT_EQ(bundleIdentifierOf("org.one.App", "org.two.App\0org.three.App\0"s), "org.one.App");
  EXPECT_EQ(bundleIdentifierOf("", "org.two.App\0org.three.App\0"s), "org.three.App");
  EXPECT_EQ(bundleIdentifierOf("", "com.apple.Music"), "com.apple.Music");  // one part, no zero
  EXPECT_EQ(bundleIdentifierOf("", "xterm\0XTerm\0"s), std::nullopt);
  EXPECT_EQ(bundleIdentifierOf("", ""), std::nullopt);
  EXPECT_EQ(bundleIdentifierOf("", "a\0my player.v2\0"s), std::nullopt);
}

TEST_F(WorkspaceTest, AShadedOrHiddenWindowsProgramIsNotInFront) {
  const auto player = makeProgram(1, "a\0com.apple.Music\0"s);
  setActive(player);
  ASSERT_NE(workspace->frontmostApplication(), nullptr);
  for (const char* state : {"_NET_WM_STATE_SHADED", "_NET_WM_STATE_HIDDEN"}) {
    SCOPED_TRACE(state);
    client.setWindows(player, "_NET_WM_STATE",
                      {client.atom("_NET_WM_STATE_STICKY"), client.atom(state)});
    EXPECT_EQ(workspace->frontmostApplication(), nullptr);
    client.setWindows(player, "_NET_WM_STATE", {client.atom("_NET_WM_STATE_STICKY")});
    EXPECT_NE(workspace->frontmostApplication(), nullptr);
  }
  client.setWindows(player, "_NET_WM_STATE", {client.atom("_NET_WM_STATE_SHADED")});
  setActive(XCB_WINDOW_NONE);
  EXPECT_EQ(workspace->frontmostApplication(), nullptr);
  setActive(player);
  EXPECT_EQ(workspace->frontmostApplication(), nullptr) << "shaded before it was active";
}

TEST_F(WorkspaceTest, NothingIsAskedWhileNothingChanges) {
  setActive(makeProgram(1, "a\0com.apple.Music\0"s));
  workspace->frontmostApplication();
  workspace->primaryScreenHeight();
  EXPECT_EQ(requestsDuring([&] {
              EXPECT_EQ(workspace->frontmostApplication()->processIdentifier(), 1);
              EXPECT_EQ(workspace->primaryScreenHeight(), 800);
              EXPECT_EQ(workspace->mainScreenScale(), 1);
            }),
            0u);
}

TEST_F(WorkspaceTest, AClassThatTheActiveWindowGetsLaterCounts) {
  const auto window = makeProgram(1, "early\0Early\0"s);
  setActive(window);
  ASSERT_EQ(workspace->frontmostApplication()->bundleIdentifier(), std::nullopt);
  client.setText(window, "WM_CLASS", "music\0com.apple.Music\0"s);
  EXPECT_EQ(workspace->frontmostApplication()->bundleIdentifier(), "com.apple.Music");
}

TEST_F(WorkspaceTest, AWindowOfAnotherHostOrWithoutAProcessHasNoProgramHere) {
  const auto remote = makeProgram(1, "a\0com.apple.Music\0"s);
  client.setText(remote, "WM_CLIENT_MACHINE", thisHost() + "-not");
  setActive(remote);
  EXPECT_EQ(workspace->frontmostApplication(), nullptr);
  setActive(makeProgram(0, "a\0com.apple.Music\0"s));
  EXPECT_EQ(workspace->frontmostApplication(), nullptr);
}

TEST_F(WorkspaceTest, AnActiveWindowThatIsGoneHasNoProgram) {
  const auto window = makeProgram(1, "a\0com.apple.Music\0"s);
  client.destroyWindow(window);
  setActive(window);
  EXPECT_EQ(workspace->frontmostApplication(), nullptr);
  EXPECT_TRUE(session->present());
}

TEST_F(WorkspaceTest, AnActiveWindowThatGoesLaterHasNoProgramThoughItStaysNamedAsActive) {
  const auto window = makeProgram(1, "a\0com.apple.Music\0"s);
  setActive(window);
  ASSERT_NE(workspace->frontmostApplication(), nullptr);
  client.destroyWindow(window);
  EXPECT_EQ(workspace->frontmostApplication(), nullptr);
  EXPECT_TRUE(session->present());
}

TEST_F(WorkspaceTest, TheScaleIsTheToolkitsWindowScale) {
  EXPECT_EQ(workspace->mainScreenScale(), 1);
  EXPECT_EQ(workspace->primaryScreenHeight(), 800);

  const auto manager = client.own("_XSETTINGS_S0");
  client.setText(manager, "_XSETTINGS_SETTINGS", littleEndianSetting("Gdk/WindowScalingFactor", 2));
  EXPECT_EQ(workspace->mainScreenScale(), 2);
  EXPECT_EQ(workspace->primaryScreenHeight(), 400);

  client.setText(manager, "_XSETTINGS_SETTINGS", littleEndianSetting("Gdk/WindowScalingFactor", 4));
  EXPECT_EQ(workspace->mainScreenScale(), 4);

  client.destroyWindow(manager);
  EXPECT_EQ(workspace->mainScreenScale(), 1);
}

TEST_F(WorkspaceTest, TheEnvironmentsScaleComesBeforeTheDesktops) {
  const auto manager = client.own("_XSETTINGS_S0");
  client.setText(manager, "_XSETTINGS_SETTINGS", littleEndianSetting("Gdk/WindowScalingFactor", 2));
  setenv("GDK_SCALE", "4", 1);
  const auto scaled =
      std::make_unique<XWorkspace>(std::make_shared<XSession>(server.display().c_str()));
  EXPECT_EQ(scaled->mainScreenScale(), 4);
  EXPECT_EQ(scaled->primaryScreenHeight(), 200);
}

TEST_F(WorkspaceTest, TheResolutionOfFontsScalesNoCoordinate) {
  client.setText(client.root(), "RESOURCE_MANAGER", "Xft.dpi:\t192\n");
  EXPECT_EQ(std::make_unique<XWorkspace>(std::make_shared<XSession>(server.display().c_str()))
                ->mainScreenScale(),
            1);
}

TEST_F(WorkspaceTest, ThePrimaryMonitorsHeightCounts) {
  client.setMonitor("left", false, 500, true);
  EXPECT_EQ(std::make_unique<XWorkspace>(std::make_shared<XSession>(server.display().c_str()))
                ->primaryScreenHeight(),
            500);
  client.setMonitor("right", true, 600, false);
  EXPECT_EQ(std::make_unique<XWorkspace>(std::make_shared<XSession>(server.display().c_str()))
                ->primaryScreenHeight(),
            600);
}

TEST_F(WorkspaceTest, SurvivesTheServersEnd) {
  setActive(makeProgram(1, "a\0com.apple.Music\0"s));
  ASSERT_NE(workspace->frontmostApplication(), nullptr);
  server.end(SIGKILL);
  EXPECT_TRUE(runLoopUntil([&] { return !session->present(); }));
  EXPECT_EQ(workspace->frontmostApplication(), nullptr);
  EXPECT_TRUE(workspace->runningApplications("com.apple.Music").empty());
  EXPECT_EQ(workspace->primaryScreenHeight(), std::nullopt);
  EXPECT_EQ(workspace->mainScreenScale(), std::nullopt);
  runLoopDry();  // ends: nothing spins on the dead connection
}

TEST_F(WorkspaceTest, ACallAfterTheServersEndNoticesItByItself) {
  setActive(makeProgram(1, "a\0com.apple.Music\0"s));
  ASSERT_NE(workspace->frontmostApplication(), nullptr);
  server.end(SIGKILL);
  EXPECT_EQ(workspace->frontmostApplication(), nullptr);
  EXPECT_FALSE(session->present());
}

TEST_F(WorkspaceTest, OnceConnectedABrokenPipeDoesNotEndTheProgram) {
  std::signal(SIGPIPE, SIG_DFL);
  const XSession another(server.display().c_str());
  ASSERT_TRUE(another.present());
  std::raise(SIGPIPE);  // ends the process unless it is ignored
  EXPECT_NE(std::signal(SIGPIPE, SIG_IGN), SIG_DFL);
}

void expectNothing(const std::shared_ptr<XSession>& session) {
  EXPECT_FALSE(session->present());
  const auto workspace = std::make_unique<XWorkspace>(session);
  EXPECT_EQ(workspace->frontmostApplication(), nullptr);
  EXPECT_TRUE(workspace->runningApplications("com.apple.Music").empty());
  EXPECT_EQ(workspace->primaryScreenHeight(), std::nullopt);
  EXPECT_EQ(workspace->mainScreenScale(), std::nullopt);
}

TEST(WorkspaceWithoutDisplayTest, AnswersNothing) {
  unsetenv("DISPLAY");
  expectNothing(std::make_shared<XSession>(nullptr));
  expectNothing(std::make_shared<XSession>(":64999"));
  expectNothing(std::make_shared<XSession>("no display at all"));
}

TEST(WorkspaceWithoutDisplayTest, AServerThatNeverAnswersIsGivenUp) {
  // Accepts connections, as a stopped server's socket does, and says nothing.
  const int listener = socket(AF_UNIX, SOCK_STREAM, 0);
  const int number = 50000 + getpid() % 10000;
  const std::string path = "/tmp/.X11-unix/X" + std::to_string(number);
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path.copy(address.sun_path + 1, path.size());
  const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + path.size());
  ASSERT_EQ(bind(listener, reinterpret_cast<const sockaddr*>(&address), length), 0);
  ASSERT_EQ(listen(listener, 8), 0);
  const auto start = std::chrono::steady_clock::now();
  expectNothing(
      std::make_shared<XSession>(std::string(":").append(std::to_string(number)).c_str()));
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(8));
  close(listener);
}

// The kernel's word on processes in a namespace of their own.
TEST(ProcessHereTest, IsTheClientsWhereThatHasTheNumberInItsOwnNamespace) {
  const TemporaryFolder proc;
  const auto write = [&](std::int32_t process, const std::string& numbers) {
    std::filesystem::create_directories(proc / std::to_string(process));
    proc.write(std::to_string(process) + "/status",
               "Name:\tplayer\nPid:\t" + std::to_string(process) + "\n" + numbers);
  };
  write(900, "NSpid:\t900\t2\n");
  write(901, "NSpid:\t901\t55\t2\nNSpgid:\t901\t55\t3\n");
  write(902, "NSpid:\t2\n");
  write(903, "");
  EXPECT_EQ(processHere(2, 900, proc.path()), 900);
  EXPECT_EQ(processHere(2, 901, proc.path()), 901);
  EXPECT_EQ(processHere(55, 901, proc.path()), 55) << "a namespace on the way";
  EXPECT_EQ(processHere(3, 900, proc.path()), 3) << "a program that speaks for another";
  EXPECT_EQ(processHere(2, 902, proc.path()), 2) << "no namespace of its own";
  EXPECT_EQ(processHere(2, 903, proc.path()), 2);
  EXPECT_EQ(processHere(2, 904, proc.path()), 2) << "ended";
  EXPECT_EQ(processHere(2, std::nullopt, proc.path()), 2);
  EXPECT_EQ(processHere(0, 900, proc.path()), 900) << "it keeps its number to itself";
  EXPECT_EQ(processHere(0, 902, proc.path()), 0);
}

TEST_F(WorkspaceTest, TheServerTellsWhichProcessAWindowsClientIs) {
  const auto window = makeProgram(1, "a\0com.apple.Music\0"s);
  EXPECT_EQ(WindowProcessQuestion(*session, window).take(), ::getpid());
  client.destroyWindow(window);
  WindowProcessQuestion(*session, window).take();  // whatever it is, it ends
}

TEST(XsettingsTest, AnIntegerIsFoundAmongOtherSettingsInEitherByteOrder) {
  // Net/ThemeName "Ab" (text), Net/Color (colour), Gdk/WindowScalingFactor 2.
  const std::string little =
      "\0\0\0\0"s
      "\1\0\0\0"s
      "\3\0\0\0"s
      "\1\0\x0d\0Net/ThemeName\0\0\0"s
      "\1\0\0\0"s
      "\2\0\0\0"s
      "Ab\0\0"s
      "\2\0\x09\0Net/Color\0\0\0"s
      "\1\0\0\0"s
      "\1\2\3\4\5\6\7\x08"s
      "\0\0\x17\0Gdk/WindowScalingFactor\0"s
      "\1\0\0\0"s
      "\2\0\0\0"s;
  EXPECT_EQ(integerSetting(little, "Gdk/WindowScalingFactor"), 2);
  EXPECT_EQ(integerSetting(little, "Net/ThemeName"), std::nullopt);
  EXPECT_EQ(integerSetting(little, "Gdk/Other"), std::nullopt);
  for (std::size_t length = 0; length < little.size(); ++length) {
    EXPECT_EQ(integerSetting(little.substr(0, length), "Gdk/WindowScalingFactor"), std::nullopt);
  }
  const std::string big =
      "\1\0\0\0"s
      "\0\0\0\1"s
      "\0\0\0\1"s
      "\0\0\0\x17Gdk/WindowScalingFactor\0"s
      "\0\0\0\1"s
      "\0\0\0\3"s;
  EXPECT_EQ(integerSetting(big, "Gdk/WindowScalingFactor"), 3);
  const std::string negative =
      "\0\0\0\0"s
      "\1\0\0\0"s
      "\1\0\0\0"s
      "\0\0\1\0A\0\0\0"s
      "\1\0\0\0"s
      "\xff\xff\xff\xff"s;
  EXPECT_EQ(integerSetting(negative, "A"), -1);
}

TEST(XsettingsTest, ASettingOfAnUnknownTypeEndsTheReading) {
  const std::string bytes =
      "\0\0\0\0"s
      "\1\0\0\0"s
      "\2\0\0\0"s
      "\7\0\1\0A\0\0\0"s
      "\1\0\0\0"s
      "\0\0\1\0B\0\0\0"s
      "\1\0\0\0"s
      "\2\0\0\0"s;
  EXPECT_EQ(integerSetting(bytes, "B"), std::nullopt);
}

TEST(WindowScaleTest, IsTheWholeNumberThatTheTextBeginsWith) {
  EXPECT_EQ(windowScaleFromText("2"), 2);
  EXPECT_EQ(windowScaleFromText("2.5"), 2);
  EXPECT_EQ(windowScaleFromText("0"), std::nullopt);
  EXPECT_EQ(windowScaleFromText("-2"), std::nullopt);
  EXPECT_EQ(windowScaleFromText(""), std::nullopt);
  EXPECT_EQ(windowScaleFromText("two"), std::nullopt);
  EXPECT_EQ(windowScaleFromText(nullptr), std::nullopt);
}

}  // namespace
}  // namespace vellora
