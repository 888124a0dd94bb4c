#include "witness/accessible_rows.h"

#include <utility>

#include <gio/gio.h>

#include "platform/linux/glib/glib_ptr.h"

namespace vellora::witness {

namespace {

using Connection = GObjectPtr<GDBusConnection>;
using Variant = GVariantPtr;

constexpr int timeoutMilliseconds = 1000;
constexpr const char* accessible = "org.a11y.atspi.Accessible";

Variant call(GDBusConnection* bus, const std::string& name, const std::string& path,
             const char* interface, const char* method, GVariant* arguments, const char* reply) {
  return Variant(g_dbus_connection_call_sync(
      bus, name.c_str(), path.c_str(), interface, method, arguments, G_VARIANT_TYPE(reply),
      G_DBUS_CALL_FLAGS_NONE, timeoutMilliseconds, nullptr, nullptr));
}

Connection accessibilityBus() {
  const Connection session(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
  if (!session) return nullptr;
  const Variant reply = call(session.get(), "org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus",
                             "GetAddress", nullptr, "(s)");
  if (!reply) return nullptr;
  const char* address = nullptr;
  g_variant_get(reply.get(), "(&s)", &address);
  return Connection(g_dbus_connection_new_for_address_sync(
      address,
      static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                        G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
      nullptr, nullptr, nullptr));
}

// One element, asked one question at a time.
struct Element {
  GDBusConnection* bus;
  std::string name;
  std::string path;

  std::string text(const char* property) const {
    const Variant reply = call(bus, name, path, "org.freedesktop.DBus.Properties", "Get",
                               g_variant_new("(ss)", accessible, property), "(v)");
    if (!reply) return {};
    GVariant* inner = nullptr;
    g_variant_get(reply.get(), "(v)", &inner);
    const Variant value(inner);
    return g_variant_is_of_type(value.get(), G_VARIANT_TYPE_STRING)
               ? g_variant_get_string(value.get(), nullptr)
               : std::string();
  }

  std::string role() const {
    const Variant reply = call(bus, name, path, accessible, "GetRoleName", nullptr, "(s)");
    if (!reply) return {};
    const char* value = nullptr;
    g_variant_get(reply.get(), "(&s)", &value);
    return value;
  }

  Rect extents() const {
    const Variant reply = call(bus, name, path, "org.a11y.atspi.Component", "GetExtents",
                               g_variant_new("(u)", 0U), "((iiii))");
    if (!reply) return {};
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    g_variant_get(reply.get(), "((iiii))", &x, &y, &width, &height);
    return {double(x), double(y), double(width), double(height)};
  }

  std::vector<Element> children() const {
    std::vector<Element> result;
    const Variant reply = call(bus, name, path, accessible, "GetChildren", nullptr, "(a(so))");
    if (!reply) return result;
    GVariantIter* list = nullptr;
    g_variant_get(reply.get(), "(a(so))", &list);
    const char* childName = nullptr;
    const char* childPath = nullptr;
    while (g_variant_iter_loop(list, "(&s&o)", &childName, &childPath)) {
      result.push_back({bus, childName, childPath});
    }
    g_variant_iter_free(list);
    return result;
  }
};

void collect(const Element& element, bool inLyrics, SeenPlayer& seen, int depth) {
  if (depth > 30) return;
  if (element.text("AccessibleId") == "Music.nowPlaying.title-Music.nowPlaying.subtitle") {
    seen.title = element.text("Description");
    if (seen.title.empty()) seen.title = element.text("Name");
  }
  const std::string label = element.text("Name");
  if (!inLyrics && label.ends_with(" lyrics")) seen.lyricsSwitch = {label, element.extents()};
  inLyrics = inLyrics || label == "Lyrics" || element.text("Description") == "Lyrics";
  if (inLyrics) {
    const std::string role = element.role();
    if (role == "scroll pane") seen.viewport = element.extents().intersection(seen.window);
    if (role == "push button") seen.rows.push_back({label, element.extents()});
  }
  for (const Element& child : element.children()) collect(child, inLyrics, seen, depth + 1);
}

}  // namespace

std::optional<SeenPlayer> readPlayer(const std::string& application) {
  const Connection bus = accessibilityBus();
  if (!bus) return std::nullopt;
  const Element desktop{bus.get(), "org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root"};
  for (const Element& program : desktop.children()) {
    if (program.text("Name") != application) continue;
    const std::vector<Element> windows = program.children();
    if (windows.empty()) return std::nullopt;
    SeenPlayer seen;
    seen.window = windows.front().extents();
    collect(windows.front(), false, seen, 0);
    return seen;
  }
  return std::nullopt;
}

}  // namespace vellora::witness
