#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "platform/linux/glib/private_bus.h"

namespace vellora {

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

// What draws the tray's items and opens their menus, on a session bus of its own. The items answer
// through the event loop of this thread.
class TrayHost {
 public:
  struct Entry {
    gint32 id = 0;
    std::string type;
    std::string label;
    bool enabled = true;
    std::string shortcut;
  };

  // Awaits an item's registration with a tray that is there from now on; the item's name.
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
        G_DBUS_CALL_FLAGS_NO_AUTO_START, 20'000, nullptr,
        [](GObject* connection, GAsyncResult* result, gpointer data) {
          auto& done = *static_cast<Answer*>(data);
          done.there = true;
          done.value.reset(
              g_dbus_connection_call_finish(G_DBUS_CONNECTION(connection), result, nullptr));
        },
        &answer);
    EXPECT_TRUE(runLoopUntil([&] { return answer.there; }, 60));
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
  GObjectPtr<GDBusConnection> host = bus.connect();
};

}  // namespace vellora
