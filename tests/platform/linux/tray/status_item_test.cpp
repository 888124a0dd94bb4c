#include "platform/status_item.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "platform/linux/tray/kept_item.h"
#include "platform/linux/tray/tray_host.h"

namespace vellora {
namespace {

using ::testing::ElementsAre;

MenuEntry entry(std::string title, std::function<void()> action = {}, std::string key = "") {
  MenuEntry made;
  made.title = std::move(title);
  made.keyEquivalent = std::move(key);
  made.action = std::move(action);
  return made;
}

class StatusItemTest : public ::testing::Test, protected TrayHost {
 protected:
  std::unique_ptr<StatusItem> item = makeNotifierItem();
};

TEST(StatusItemWithoutABusTest, ThereIsNone) {
  leaveSessionBus();
  EXPECT_EQ(makeNotifierItem(), nullptr);
}

// Without a look at the environment first, GLib starts a bus by dbus-launch, and nobody ends it.
TEST(StatusItemWithoutABusTest, NoBusIsStartedForIt) {
  leaveSessionBus();
  char pattern[] = "/tmp/vellora-tray-XXXXXX";
  const std::filesystem::path folder = ::mkdtemp(pattern);
  const auto launcher = folder / "dbus-launch";
  std::ofstream(launcher) << "#!/bin/sh\n: >" << (folder / "started").string() << "\n";
  std::filesystem::permissions(launcher, std::filesystem::perms::owner_all);
  g_setenv("PATH", (folder.string() + ":" + g_getenv("PATH")).c_str(), TRUE);
  g_setenv("DISPLAY", ":no-display", TRUE);
  EXPECT_EQ(makeNotifierItem(), nullptr);
  EXPECT_FALSE(std::filesystem::exists(folder / "started"));
  std::filesystem::remove_all(folder);
}

// Keeps every thread of GLib's pool for tasks waiting; the menu's server fetches the bus in one.
// They wait at a queue of GLib's: the thread sanitizer does not see the locks under which GLib
// hands tasks over, so it would take an own object that they bring along for a race.
class BusyTaskThreads {
 public:
  BusyTaskThreads() {
    for (int i = 0; i < count; ++i) {
      const GObjectPtr<GTask> task(g_task_new(nullptr, nullptr, nullptr, nullptr));
      g_task_set_task_data(task.get(), g_async_queue_ref(gate_.get()), &leave);
      g_task_run_in_thread(task.get(), [](GTask* running, gpointer, gpointer gate, GCancellable*) {
        g_async_queue_pop(static_cast<GAsyncQueue*>(gate));
        g_task_return_boolean(running, TRUE);
      });
    }
  }
  ~BusyTaskThreads() { release(); }
  BusyTaskThreads(const BusyTaskThreads&) = delete;
  BusyTaskThreads& operator=(const BusyTaskThreads&) = delete;

  void release() {
    if (std::exchange(released_, true)) return;
    for (int i = 0; i < count; ++i) g_async_queue_push(gate_.get(), gate_.get());
  }

 private:
  static constexpr int count = 40;

  static void leave(gpointer gate) { g_async_queue_unref(static_cast<GAsyncQueue*>(gate)); }
  struct Leave {
    void operator()(GAsyncQueue* gate) const { leave(gate); }
  };

  const std::unique_ptr<GAsyncQueue, Leave> gate_{g_async_queue_new()};
  bool released_ = false;
};

TEST_F(StatusItemTest, TrayHearsOfTheItemOnlyWhenItsMenuIsThere) {
  item.reset();
  FakeTray tray(bus.connect());
  BusyTaskThreads busy;
  item = makeNotifierItem();
  item->setMenu({entry("only")});
  const std::string name = "org.kde.StatusNotifierItem-" + std::to_string(::getpid()) + "-1";
  for (int i = 0; i < 10; ++i) {  // more exchanges than a registration takes
    EXPECT_EQ(printed(property(name, "Id")), "'vellora'");
  }
  EXPECT_TRUE(tray.registered.empty());
  busy.release();
  ASSERT_TRUE(runLoopUntil([&] { return !tray.registered.empty(); }));
  ASSERT_EQ(menu(name).size(), 1u);
  EXPECT_EQ(menu(name)[0].label, "only");
}

TEST_F(StatusItemTest, RegistersWithATrayThatIsThere) {
  ASSERT_TRUE(item);
  FakeTray tray(bus.connect());
  ASSERT_TRUE(runLoopUntil([&] { return !tray.registered.empty(); }));
  EXPECT_THAT(tray.registered,
              ElementsAre("org.kde.StatusNotifierItem-" + std::to_string(::getpid()) + "-1"));
  // The name is the item's by then.
  EXPECT_EQ(printed(property(tray.registered[0], "Id")), "'vellora'");
}

TEST_F(StatusItemTest, RegistersAgainWithEachTrayThatAppears) {
  auto first = std::make_unique<FakeTray>(bus.connect());
  ASSERT_TRUE(runLoopUntil([&] { return !first->registered.empty(); }));
  first.reset();
  FakeTray second(bus.connect());
  EXPECT_TRUE(runLoopUntil([&] { return second.registered.size() == 1; }));
}

TEST_F(StatusItemTest, IsGoneWithItsOwner) {
  const auto name = service();
  item.reset();
  EXPECT_FALSE(property(name, "Id"));
}

TEST_F(StatusItemTest, TellsTheTrayWhenTitleOrToolTipChanges) {
  const auto name = service();
  std::vector<std::string> signals;
  const guint subscription = g_dbus_connection_signal_subscribe(
      host.get(), name.c_str(), "org.kde.StatusNotifierItem", nullptr, "/StatusNotifierItem",
      nullptr, G_DBUS_SIGNAL_FLAGS_NONE,
      [](GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar* signal, GVariant*,
         gpointer list) { static_cast<std::vector<std::string>*>(list)->emplace_back(signal); },
      &signals, nullptr);
  property(name, "Id");  // the subscription is in force when this is answered
  item->setToolTip("a");
  item->setToolTip("a");
  item->setTitle("文");
  item->setToolTip("b");
  EXPECT_TRUE(runLoopUntil([&] { return signals.size() >= 3; }));
  property(name, "Id");
  EXPECT_THAT(signals, ElementsAre("NewToolTip", "NewTitle", "NewToolTip"));
  g_dbus_connection_signal_unsubscribe(host.get(), subscription);
}

TEST_F(StatusItemTest, IsAMenuWithAnActivePicture) {
  const auto name = service();
  EXPECT_EQ(printed(property(name, "Category")), "'ApplicationStatus'");
  EXPECT_EQ(printed(property(name, "Status")), "'Active'");
  EXPECT_EQ(printed(property(name, "ItemIsMenu")), "true");
  EXPECT_EQ(printed(property(name, "Menu")), "'/MenuBar'");
  EXPECT_EQ(printed(property(name, "IconName")), "''");
  EXPECT_EQ(printed(property(name, "AttentionIconPixmap")), "[]");
}

TEST_F(StatusItemTest, PictureShowsTheGlyphAtEverySize) {
  const auto name = service();
  const auto pixmaps = property(name, "IconPixmap");
  ASSERT_TRUE(pixmaps);
  ASSERT_EQ(g_variant_n_children(pixmaps.get()), 5u);
  int side = 0;
  for (gsize i = 0; i < 5; ++i) {
    const int smaller = side;
    int height = 0;
    GVariant* bytes = nullptr;
    g_variant_get_child(pixmaps.get(), i, "(ii@ay)", &side, &height, &bytes);
    const GVariantPtr held(bytes);
    EXPECT_GT(side, smaller);
    EXPECT_EQ(side, height);
    gsize size = 0;
    const auto* pixels = static_cast<const guint8*>(g_variant_get_fixed_array(bytes, &size, 1));
    ASSERT_EQ(size, static_cast<gsize>(side * side * 4));
    const auto light = [&](int x, int y) { return pixels[(y * side + x) * 4 + 2] > 128; };
    for (gsize pixel = 0; pixel < size; pixel += 4) ASSERT_EQ(pixels[pixel], 255);
    // 文 has a bar through its upper third, nothing beside its middle, and two feet apart.
    int bar = 0;
    for (int y = side / 5; y < side * 2 / 5; ++y) {
      int row = 0;
      for (int x = 0; x < side; ++x) row += light(x, y) ? 1 : 0;
      bar = std::max(bar, row);
    }
    EXPECT_GT(bar, side * 3 / 4) << side;
    EXPECT_FALSE(light(1, side / 2)) << side;
    EXPECT_FALSE(light(side - 2, side / 2)) << side;
    EXPECT_FALSE(light(side / 2, side - side / 6)) << side;
    EXPECT_FALSE(light(0, 0)) << side;
  }
}

TEST(StatusItemOverTwoBusesTest, IsThereAgainWithAllThatItShows) {
  auto first = std::make_unique<TrayHost>();
  const auto item = makeNotifierItem();
  item->setTitle("文");
  item->setMenu({entry("Stop", [] {})});
  first->service();
  first.reset();
  item->setToolTip("told in between");
  TrayHost second;
  const std::string name = second.service();
  EXPECT_EQ(second.printed(second.property(name, "Title")), "'文'");
  EXPECT_EQ(second.printed(second.property(name, "ToolTip")), "('', [], 'told in between', '')");
  const auto menu = second.menu(name);
  ASSERT_EQ(menu.size(), 1U);
  EXPECT_EQ(menu[0].label, "Stop");
}

}  // namespace
}  // namespace vellora
