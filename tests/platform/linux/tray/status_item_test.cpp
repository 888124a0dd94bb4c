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

#include "platform/linux/glib/private_bus.h"
#include "platform/linux/tray/notifier_item.h"

namespace vellora {
namespace {

using ::testing::ElementsAre;

// The tray: org.kde.StatusNotifierWatcher on a connection of its own. Lists who registered.
class FakeTray {
 public:
  explicit FakeTray(GObjectPtr<GDBusConnection> bus) : bus_(std::move(bus)) {
    const GNodeInfoPtr node(g_dbus_node_info_new_for_xml(
        "<node><interface name='org.kde.StatusNotifierWatcher'>"
        "<method name='RegisterStatusNotifierItem'><arg type='s' direction='in'/></method>"
        "</interface></node>",
        nullptr));
    static constexpr GDBusInterfaceVTable calls{&FakeTray::called, nullptr, nullptr, {}};
    object_ = g_dbus_connection_register_object(
        bus_.get(), "/StatusNotifierWatcher", node->interfaces[0], &calls, this, nullptr, nullptr);
    name_ = g_bus_own_name_on_connection(bus_.get(), "org.kde.StatusNotifierWatcher",
                                         G_BUS_NAME_OWNER_FLAGS_NONE, nullptr, nullptr, nullptr,
                                         nullptr);
  }
  ~FakeTray() {
    g_bus_unown_name(name_);
    g_dbus_connection_unregister_object(bus_.get(), object_);
  }
  FakeTray(const FakeTray&) = delete;
  FakeTray& operator=(const FakeTray&) = delete;

  std::vector<std::string> registered;

 private:
  static void called(GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar*,
                     GVariant* arguments, GDBusMethodInvocation* invocation, gpointer self) {
    const gchar* service = nullptr;
    g_variant_get(arguments, "(&s)", &service);
    static_cast<FakeTray*>(self)->registered.emplace_back(service);
    g_dbus_method_invocation_return_value(invocation, nullptr);
  }

  GObjectPtr<GDBusConnection> bus_;
  guint object_ = 0;
  guint name_ = 0;
};

MenuEntry separator() {
  MenuEntry entry;
  entry.separator = true;
  return entry;
}
MenuEntry entry(std::string title, std::function<void()> action = {}, std::string key = "") {
  MenuEntry made;
  made.title = std::move(title);
  made.keyEquivalent = std::move(key);
  made.action = std::move(action);
  return made;
}

class StatusItemTest : public ::testing::Test {
 protected:
  StatusItemTest() : host(bus.connect()), item(makeNotifierItem()) {}

  // Awaits the item's registration with a tray that is there from now on.
  std::string service() {
    FakeTray tray(bus.connect());
    EXPECT_TRUE(runLoopUntil([&] { return !tray.registered.empty(); }));
    return tray.registered.empty() ? std::string() : tray.registered[0];
  }

  // A tray host's call, answered by the item through the event loop of this thread.
  GVariantPtr call(const std::string& name, const char* path, const char* interface,
                   const char* method, GVariant* arguments) {
    struct Answer {
      bool there = false;
      GVariantPtr value;
    } answer;
    g_dbus_connection_call(
        host.get(), name.c_str(), path, interface, method, arguments, nullptr,
        G_DBUS_CALL_FLAGS_NO_AUTO_START, 5000, nullptr,
        [](GObject* connection, GAsyncResult* result, gpointer data) {
          auto& done = *static_cast<Answer*>(data);
          done.there = true;
          done.value.reset(
              g_dbus_connection_call_finish(G_DBUS_CONNECTION(connection), result, nullptr));
        },
        &answer);
    EXPECT_TRUE(runLoopUntil([&] { return answer.there; }, 10));
    return std::move(answer.value);
  }
  GVariantPtr property(const std::string& name, const char* asked) {
    const auto answer = call(name, "/StatusNotifierItem", "org.freedesktop.DBus.Properties", "Get",
                             g_variant_new("(ss)", "org.kde.StatusNotifierItem", asked));
    if (!answer) return nullptr;
    const GVariantPtr boxed(g_variant_get_child_value(answer.get(), 0));
    return GVariantPtr(g_variant_get_variant(boxed.get()));
  }
  std::string printed(const GVariantPtr& value) {
    return value ? GCharPtr(g_variant_print(value.get(), FALSE)).get() : "nothing";
  }

  struct Entry {
    gint32 id = 0;
    std::string type;
    std::string label;
    bool enabled = true;
    std::string shortcut;
  };
  std::vector<Entry> menu(const std::string& name) {
    const auto path = property(name, "Menu");
    GVariantBuilder none;
    g_variant_builder_init(&none, G_VARIANT_TYPE_STRING_ARRAY);
    const auto answer =
        call(name, g_variant_get_string(path.get(), nullptr), "com.canonical.dbusmenu", "GetLayout",
             g_variant_new("(iias)", 0, -1, &none));
    std::vector<Entry> entries;
    if (!answer) return entries;
    GVariant* children = nullptr;
    g_variant_get(answer.get(), "(u(i@a{sv}@av))", nullptr, nullptr, nullptr, &children);
    const GVariantPtr list(children);
    for (gsize i = 0; i < g_variant_n_children(list.get()); ++i) {
      const GVariantPtr boxed(g_variant_get_child_value(list.get(), i));
      const GVariantPtr child(g_variant_get_variant(boxed.get()));
      GVariant* map = nullptr;
      Entry shown;
      g_variant_get(child.get(), "(i@a{sv}@av)", &shown.id, &map, nullptr);
      const GVariantPtr properties(map);
      const gchar* text = nullptr;
      if (g_variant_lookup(map, "type", "&s", &text) != FALSE) shown.type = text;
      if (g_variant_lookup(map, "label", "&s", &text) != FALSE) shown.label = text;
      gboolean enabled = TRUE;
      g_variant_lookup(map, "enabled", "b", &enabled);
      shown.enabled = enabled != FALSE;
      const GVariantPtr keys(g_variant_lookup_value(map, "shortcut", nullptr));
      if (keys) shown.shortcut = printed(keys);
      entries.push_back(shown);
    }
    return entries;
  }
  void choose(const std::string& name, gint32 id) {
    call(name, "/MenuBar", "com.canonical.dbusmenu", "Event",
         g_variant_new("(isvu)", id, "clicked", g_variant_new_int32(0), 0u));
  }

  PrivateBus bus;
  GObjectPtr<GDBusConnection> host;
  std::unique_ptr<StatusItem> item;
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

TEST_F(StatusItemTest, CarriesTitleAndToolTip) {
  EXPECT_TRUE(item->hasButton());
  item->setTitle("文");
  item->setToolTip("Vellora");
  const auto name = service();
  EXPECT_EQ(printed(property(name, "Title")), "'文'");
  EXPECT_EQ(printed(property(name, "ToolTip")), "('', [], 'Vellora', '')");
  item->setToolTip("Ready — bring Music to the front");
  EXPECT_EQ(printed(property(name, "ToolTip")), "('', [], 'Ready — bring Music to the front', '')");
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

TEST_F(StatusItemTest, MenuShowsLabelSeparatorAndCommands) {
  item->setMenu({entry("Vellora • Experimental"), separator(),
                 entry("Allow lyric alignment…", [] {}),
                 entry(
                     "Stop overlay", [] {}, "q")});
  const auto entries = menu(service());
  ASSERT_EQ(entries.size(), 4u);
  EXPECT_EQ(entries[0].label, "Vellora • Experimental");
  EXPECT_FALSE(entries[0].enabled);
  EXPECT_EQ(entries[0].shortcut, "");
  EXPECT_EQ(entries[1].type, "separator");
  EXPECT_EQ(entries[2].label, "Allow lyric alignment…");
  EXPECT_TRUE(entries[2].enabled);
  EXPECT_EQ(entries[2].shortcut, "");
  EXPECT_EQ(entries[3].label, "Stop overlay");
  EXPECT_TRUE(entries[3].enabled);
  EXPECT_EQ(entries[3].shortcut, "[['Control', 'q']]");
}

TEST_F(StatusItemTest, ChosenEntryRunsItsActionEachTime) {
  std::vector<std::string> chosen;
  item->setMenu({entry("label"), entry("first", [&] { chosen.emplace_back("first"); }),
                 entry("second", [&] { chosen.emplace_back("second"); })});
  const auto name = service();
  const auto entries = menu(name);
  ASSERT_EQ(entries.size(), 3u);
  choose(name, entries[0].id);  // not selectable: nothing happens
  choose(name, entries[1].id);
  choose(name, entries[1].id);
  choose(name, entries[2].id);
  EXPECT_TRUE(runLoopUntil([&] { return chosen.size() >= 3; }));
  EXPECT_THAT(chosen, ElementsAre("first", "first", "second"));
}

TEST_F(StatusItemTest, ActionMayReplaceTheMenu) {
  bool chosen = false;
  item->setMenu({entry("first", [&] {
    item->setMenu({entry("other")});
    chosen = true;
  })});
  const auto name = service();
  choose(name, menu(name).at(0).id);
  ASSERT_TRUE(runLoopUntil([&] { return chosen; }));
  EXPECT_EQ(menu(name).at(0).label, "other");
}

TEST_F(StatusItemTest, UnderscoresInTitlesAreShown) {
  item->setMenu({entry("a_b", [] {})});
  EXPECT_EQ(menu(service()).at(0).label, "a__b");
}

}  // namespace
}  // namespace vellora
