// How windows that a description names become the player's, and where they are.
#include <atomic>
#include <chrono>
#include <csignal>
#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>
#include <poll.h>
#include <sys/utsname.h>

#include "platform/linux/players/player_windows.h"
#include "platform/linux/x11/x_session.h"
#include "platform/linux/x11/x_workspace.h"
#include "support/x_client.h"
#include "support/x_server.h"

namespace vellora {
namespace {

using std::string_literals::operator""s;

PlayerDescriptionPtr describe(const std::string& identifier, std::vector<std::string> classes) {
  PlayerDescription description;
  description.identifier = identifier;
  description.windowClasses = std::move(classes);
  return std::make_shared<PlayerDescription>(description);
}

class DescribedPlayersTest : public testing::Test {
 protected:
  DescribedPlayersTest() {
    unsetenv("GDK_SCALE");
    session = std::make_shared<XSession>(server.display().c_str());
    workspace = std::make_unique<XWorkspace>(session, descriptions, windows);
  }

  xcb_window_t makeProgram(std::uint32_t process, const std::string& wmClass,
                           const Rect& frame = {10, 10, 100, 100}) {
    const xcb_window_t window = client.makeWindow(frame, 0xffffff);
    utsname names{};
    uname(&names);
    client.setNumber(window, "_NET_WM_PID", process);
    client.setText(window, "WM_CLASS", wmClass);
    client.setText(window, "WM_CLIENT_MACHINE", names.nodename);
    return window;
  }

  // The test stands in for the window manager.
  void setActive(xcb_window_t window) {
    client.setWindows(client.root(), "_NET_ACTIVE_WINDOW", {window});
  }
  void list(const std::vector<xcb_window_t>& all) {
    client.setWindows(client.root(), "_NET_CLIENT_LIST", all);
  }
  void configure(xcb_window_t window, std::uint16_t mask,
                 const std::vector<std::uint32_t>& values) {
    xcb_configure_window(client.connection(), window, mask, values.data());
    client.numbers(window, "WM_CLASS");  // comes back when the server has done it
  }
  void moveTo(xcb_window_t window, std::uint32_t x, std::uint32_t y) {
    configure(window, XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y, {x, y});
  }

  std::optional<std::string> frontIdentifier() {
    const auto application = workspace->frontmostApplication();
    return application ? application->bundleIdentifier() : std::nullopt;
  }
  // Of the player in front; null where there is none.
  Rect frontArea() {
    workspace->frontmostApplication();
    const auto all = windows->all();
    return all.empty() ? Rect::null() : all.front().clientArea.value_or(Rect::null());
  }
  std::vector<std::int32_t> known() const {
    std::vector<std::int32_t> processes;
    for (const PlayerWindow& window : windows->all()) processes.push_back(window.process);
    return processes;
  }
  // Until the window manager's list has been taken in.
  bool becomeKnown(const std::vector<std::int32_t>& processes) {
    return runLoopUntil([&] {
      workspace->frontmostApplication();
      return known() == processes;
    });
  }

  const std::vector<PlayerDescriptionPtr> descriptions{
      describe("first", {"Navigator", "org.example.Tunes"}), describe("second", {"Navigator"}),
      describe("third", {"Jukebox"})};
  const std::shared_ptr<PlayerWindows> windows = std::make_shared<PlayerWindows>();
  XServer server;
  XClient client{server.display()};
  std::shared_ptr<XSession> session;
  std::unique_ptr<XWorkspace> workspace;
};

using Processes = std::vector<std::int32_t>;

TEST_F(DescribedPlayersTest, AWindowWhoseClassIsDescribedIsThePlayers) {
  setActive(makeProgram(7, "some\0Navigator\0"s));
  EXPECT_EQ(frontIdentifier(), "com.apple.Music");
  EXPECT_EQ(workspace->frontmostApplication()->processIdentifier(), 7);
  const auto window = windows->find(7);
  ASSERT_TRUE(window);
  ASSERT_EQ(window->descriptions.size(), 2u);
  EXPECT_EQ(window->descriptions[0]->identifier, "first");
  EXPECT_EQ(window->descriptions[1]->identifier, "second");
}

TEST_F(DescribedPlayersTest, SoIsOneWhoseApplicationIdentifierIsDescribed) {
  const auto window = makeProgram(7, "some\0Other\0"s);
  client.setText(window, "_GTK_APPLICATION_ID", "org.example.Tunes");
  setActive(window);
  EXPECT_EQ(frontIdentifier(), "com.apple.Music");
  EXPECT_EQ(known(), Processes{7});
}

TEST_F(DescribedPlayersTest, OthersAreWhatTheyWere) {
  for (const auto& [wmClass, identifier] :
       std::vector<std::pair<std::string, std::optional<std::string>>>{
           {"Navigator\0Other\0"s, std::nullopt},  // the instance part names no player
           {"a\0navigator\0"s, std::nullopt},
           {"a\0org.example.Editor\0"s, "org.example.Editor"},
           {"a\0com.apple.Music\0"s, "com.apple.Music"}}) {
    setActive(makeProgram(7, wmClass));
    EXPECT_EQ(frontIdentifier(), identifier) << wmClass;
    EXPECT_EQ(known(), Processes());
  }
}

TEST_F(DescribedPlayersTest, OfAProgramsWindowsTheOneInFrontCounts) {
  const auto main = makeProgram(7, "a\0Navigator\0"s, {10, 20, 300, 200});
  const auto dialog = makeProgram(7, "a\0org.example.Dialog\0"s);
  setActive(main);
  ASSERT_EQ(frontIdentifier(), "com.apple.Music");
  setActive(dialog);
  EXPECT_EQ(frontIdentifier(), "org.example.Dialog");
  setActive(main);
  EXPECT_EQ(frontIdentifier(), "com.apple.Music");
  EXPECT_EQ(frontArea(), Rect({10, 20, 300, 200}));
}

TEST_F(DescribedPlayersTest, ThePlayerLastInFrontComesFirst) {
  const auto first = makeProgram(7, "a\0Navigator\0"s);
  const auto second = makeProgram(8, "a\0Jukebox\0"s);
  list({first, second});
  ASSERT_TRUE(becomeKnown({7, 8}));
  for (const auto& [window, order] :
       {std::pair(second, Processes{8, 7}), {first, {7, 8}}, {second, {8, 7}}}) {
    setActive(window);
    workspace->frontmostApplication();
    EXPECT_EQ(known(), order);
  }
  setActive(XCB_WINDOW_NONE);
  EXPECT_EQ(workspace->frontmostApplication(), nullptr);
  EXPECT_EQ(known(), (Processes{8, 7}));
}

TEST_F(DescribedPlayersTest, TheAreaFollowsAMovedOrResizedWindow) {
  const auto window = makeProgram(7, "a\0Navigator\0"s, {10, 20, 300, 200});
  setActive(window);
  EXPECT_EQ(frontArea(), Rect({10, 20, 300, 200}));
  moveTo(window, 40, 50);
  EXPECT_EQ(frontArea(), Rect({40, 50, 300, 200}));
  configure(window, XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT, {333, 222});
  EXPECT_EQ(frontArea(), Rect({40, 50, 333, 222}));
  moveTo(window, static_cast<std::uint32_t>(-60), 5);
  EXPECT_EQ(frontArea(), Rect({-60, 5, 333, 222}));
}

TEST_F(DescribedPlayersTest, TheAreaLeavesTheBorderOut) {
  const auto window = makeProgram(7, "a\0Navigator\0"s, {10, 20, 300, 200});
  configure(window, XCB_CONFIG_WINDOW_BORDER_WIDTH, {5});
  setActive(window);
  EXPECT_EQ(frontArea(), Rect({15, 25, 300, 200}));
}

// A frame that moves takes the window along, which hears of it only if the window manager tells.
TEST_F(DescribedPlayersTest, TheAreaFollowsTheFramesAroundAWindow) {
  const auto window = makeProgram(7, "a\0Navigator\0"s, {10, 20, 300, 200});
  const auto outer = client.makeWindow({100, 100, 400, 400}, 0x808080, false);
  const auto inner = client.makeWindow({0, 0, 400, 400}, 0x404040, false);
  client.reparent(inner, outer);
  setActive(window);
  EXPECT_EQ(frontArea(), Rect({10, 20, 300, 200}));
  client.reparent(window, inner);
  EXPECT_EQ(frontArea(), Rect({100, 100, 300, 200}));
  moveTo(outer, 150, 130);
  EXPECT_EQ(frontArea(), Rect({150, 130, 300, 200}));
  moveTo(inner, 3, 25);
  EXPECT_EQ(frontArea(), Rect({153, 155, 300, 200}));
  client.reparent(window, client.root());
  EXPECT_EQ(frontArea(), Rect({0, 0, 300, 200}));
}

TEST_F(DescribedPlayersTest, TheAreaLeavesAShadowOutThatTheProgramDraws) {
  const auto window = makeProgram(7, "a\0Navigator\0"s, {10, 20, 300, 200});
  setActive(window);
  EXPECT_EQ(frontArea(), Rect({10, 20, 300, 200}));
  client.setWindows(window, "_GTK_FRAME_EXTENTS", {26, 27, 23, 29});  // left, right, top, bottom
  EXPECT_EQ(frontArea(), Rect({36, 43, 247, 148}));
  for (const auto& nonsense : {std::vector<std::uint32_t>{26, 27, 23},
                               {150, 150, 0, 0},
                               {0, 0, 100, 100},
                               {0xffffffff, 0xffffffff, 1, 1}}) {
    client.setWindows(window, "_GTK_FRAME_EXTENTS", nonsense);
    EXPECT_EQ(frontArea(), Rect({10, 20, 300, 200}));
  }
}

TEST_F(DescribedPlayersTest, AWindowManagersFrameIsNotPartOfTheArea) {
  ChildProgram manager({"openbox", "--sm-disable"}, server.display());
  ASSERT_TRUE(runLoopUntil(
      [&] { return !client.numbers(client.root(), "_NET_SUPPORTING_WM_CHECK").empty(); }));
  const auto window = makeProgram(7, "a\0Navigator\0"s, {200, 100, 300, 200});
  ASSERT_TRUE(runLoopUntil([&] {
    client.map(window);  // a window manager that still starts may lose the first request
    client.activate(window);
    return frontIdentifier() == "com.apple.Music";
  }));
  const auto seen = [&] {
    const XcbReply<xcb_translate_coordinates_reply_t> origin(xcb_translate_coordinates_reply(
        client.connection(),
        xcb_translate_coordinates(client.connection(), window, client.root(), 0, 0), nullptr));
    return Rect{static_cast<double>(origin->dst_x), static_cast<double>(origin->dst_y), 300, 200};
  };
  EXPECT_TRUE(runLoopUntil([&] { return client.topLevelOf(window) != window; }));
  EXPECT_TRUE(runLoopUntil([&] { return frontArea() == seen(); }));
  moveTo(window, 333, 222);
  EXPECT_TRUE(runLoopUntil([&] { return seen().x > 320 && frontArea() == seen(); }));
}

TEST_F(DescribedPlayersTest, NothingIsAskedWhileNothingMoves) {
  const auto window = makeProgram(7, "a\0Navigator\0"s, {10, 20, 300, 200});
  const auto other = makeProgram(8, "a\0Jukebox\0"s);
  setActive(window);
  list({window, other});
  ASSERT_TRUE(becomeKnown({7, 8}));
  const auto requests = [&] {
    // Until the answers to everything asked before are here: none leads to a question later.
    xcb_connection_t* const c = session->connection();
    const XcbReply<xcb_get_input_focus_reply_t> last(
        xcb_get_input_focus_reply(c, xcb_get_input_focus(c), nullptr));
    const unsigned before = xcb_no_operation(session->connection()).sequence;
    EXPECT_EQ(frontIdentifier(), "com.apple.Music");
    return xcb_no_operation(session->connection()).sequence - before - 1;
  };
  EXPECT_TRUE(runLoopUntil([&] { return requests() == 0; }));
  EXPECT_EQ(requests(), 0u);
  moveTo(window, 40, 50);
  EXPECT_GT(requests(), 0u);
  EXPECT_EQ(requests(), 0u);
}

TEST_F(DescribedPlayersTest, TheScaleIsTheScreens) {
  setActive(makeProgram(7, "a\0Navigator\0"s));
  workspace->frontmostApplication();
  EXPECT_EQ(windows->find(7)->scale, 1);
  const auto manager = client.own("_XSETTINGS_S0");
  const auto settings = [](char scale) {
    return "\0\0\0\0\1\0\0\0\1\0\0\0\0\0\x17\0Gdk/WindowScalingFactor\0\1\0\0\0"s + scale +
           "\0\0\0"s;
  };
  client.setText(manager, "_XSETTINGS_SETTINGS", settings(2));
  workspace->frontmostApplication();
  EXPECT_EQ(windows->find(7)->scale, 2);
}

TEST_F(DescribedPlayersTest, PlayersThatWereNeverInFrontAreNotedAndThoseWithoutWindowsDropped) {
  const auto first = makeProgram(7, "a\0Navigator\0"s, {10, 20, 300, 200});
  const auto second = makeProgram(8, "a\0Jukebox\0"s);
  const auto another = makeProgram(7, "a\0Navigator\0"s);
  const auto editor = makeProgram(9, "a\0Editor\0"s);
  setActive(first);
  list({editor, second, first, another});
  EXPECT_TRUE(becomeKnown({7, 8}));
  EXPECT_EQ(windows->find(8)->descriptions.at(0)->identifier, "third");
  EXPECT_EQ(windows->find(8)->clientArea, std::nullopt);
  EXPECT_EQ(windows->find(7)->clientArea, Rect({10, 20, 300, 200}));  // what is known stays
  list({editor, first});
  EXPECT_TRUE(becomeKnown({7}));
  list({editor});
  EXPECT_TRUE(becomeKnown({7})) << "in front, whatever the list says";
  setActive(editor);
  workspace->frontmostApplication();
  list({});
  EXPECT_TRUE(becomeKnown({}));
}

// What plays is asked for before anybody asks what is in front.
TEST_F(DescribedPlayersTest, PlayersBecomeKnownWhileNobodyAsks) {
  const auto first = makeProgram(7, "a\0Navigator\0"s);
  const auto second = makeProgram(8, "a\0Jukebox\0"s);
  list({first, second});
  EXPECT_TRUE(runLoopUntil([&] { return known() == (Processes{7, 8}); }));
  setActive(second);
  EXPECT_TRUE(runLoopUntil([&] { return known() == (Processes{8, 7}); }));
  list({first});
  setActive(first);
  EXPECT_TRUE(runLoopUntil([&] { return known() == Processes{7}; }));
  runLoopDry();  // ends: it asks no more
}

TEST_F(DescribedPlayersTest, PlayersThatWereThereBeforeBecomeKnownWithoutAnEvent) {
  const auto first = makeProgram(7, "a\0Navigator\0"s);
  list({first});
  const auto later = std::make_shared<PlayerWindows>();
  const XWorkspace another(std::make_shared<XSession>(server.display().c_str()), descriptions,
                           later);
  EXPECT_TRUE(runLoopUntil([&] { return later->find(7).has_value(); }));
}

// A server that does not answer holds nobody up for a list that is nobody's hurry.
TEST_F(DescribedPlayersTest, TheListIsNotWaitedFor) {
  const auto window = makeProgram(7, "a\0Navigator\0"s);
  setActive(window);
  const auto second = makeProgram(8, "a\0Jukebox\0"s);
  list({window, second});
  ASSERT_TRUE(becomeKnown({7, 8}));
  list({window});
  pollfd news{session->fd(), POLLIN, 0};
  ASSERT_EQ(::poll(&news, 1, 10000), 1);
  ASSERT_EQ(::kill(server.pid(), SIGSTOP), 0);
  std::atomic<bool> woken = false;
  std::jthread alarm([&](const std::stop_token& stop) {
    for (int i = 0; i < 100 && !stop.stop_requested(); ++i) {
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    woken = !stop.stop_requested();
    ::kill(server.pid(), SIGCONT);
  });
  for (int i = 0; i < 5; ++i) workspace->frontmostApplication();
  EXPECT_FALSE(woken);
  alarm.request_stop();
  alarm.join();
  EXPECT_TRUE(becomeKnown({7}));
}

TEST_F(DescribedPlayersTest, RunningPlayersAreListedTheFrontOneFirst) {
  const auto first = makeProgram(7, "a\0Navigator\0"s, {10, 20, 300, 200});
  const auto second = makeProgram(8, "a\0com.apple.Music\0"s);
  const auto third = makeProgram(9, "a\0Jukebox\0"s, {40, 50, 60, 70});
  const auto dialog = makeProgram(9, "a\0Dialog\0"s);
  const auto running = [&] {
    Processes processes;
    for (const auto& each : workspace->runningApplications("com.apple.Music")) {
      EXPECT_EQ(each->bundleIdentifier(), "com.apple.Music");
      processes.push_back(each->processIdentifier());
    }
    return processes;
  };
  list({first, second, dialog, third});
  EXPECT_EQ(running(), (Processes{7, 8, 9}));
  EXPECT_EQ(known(), (Processes{7, 9}));
  EXPECT_EQ(windows->find(9)->clientArea, Rect({40, 50, 60, 70}));
  client.setWindows(client.root(), "_NET_CLIENT_LIST_STACKING", {first, second, third, dialog});
  EXPECT_EQ(running(), (Processes{9, 8, 7}));
  setActive(second);
  EXPECT_EQ(running(), (Processes{8, 9, 7}));
}

TEST_F(DescribedPlayersTest, ThePlayersGoWithTheDisplay) {
  setActive(makeProgram(7, "a\0Navigator\0"s));
  ASSERT_EQ(frontIdentifier(), "com.apple.Music");
  server.end(SIGKILL);
  EXPECT_TRUE(runLoopUntil([&] { return !frontIdentifier(); }));
  EXPECT_EQ(known(), Processes());
}

TEST_F(DescribedPlayersTest, AWindowThatGoesIsNoPlayersAnyMore) {
  const auto window = makeProgram(7, "a\0Navigator\0"s);
  setActive(window);
  ASSERT_EQ(frontIdentifier(), "com.apple.Music");
  client.destroyWindow(window);
  EXPECT_EQ(workspace->frontmostApplication(), nullptr);
}

}  // namespace
}  // namespace vellora
