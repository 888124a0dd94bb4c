#include "witness/accessible_element.h"

namespace vellora::witness {

namespace {

using Variant = GVariantPtr;

constexpr int timeoutMilliseconds = 1000;
constexpr const char* accessible = "org.a11y.atspi.Accessible";

Variant call(GDBusConnection* bus, const std::string& name, const std::string& path,
             const char* interface, const char* method, GVariant* arguments, const char* reply) {
  return Variant(g_dbus_connection_call_sync(
      bus, name.c_str(), path.c_str(), interface, method, arguments, G_VARIANT_TYPE(reply),
      G_DBUS_CALL_FLAGS_NONE, timeoutMilliseconds, nullptr, nullptr));
}

}  // namespace

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

std::string Element::text(const char* property) const {
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

std::string Element::role() const {
  const Variant reply = call(bus, name, path, accessible, "GetRoleName", nullptr, "(s)");
  if (!reply) return {};
  const char* value = nullptr;
  g_variant_get(reply.get(), "(&s)", &value);
  return value;
}

Rect Element::extents() const {
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

std::vector<Element> Element::children() const {
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

std::map<std::string, std::string> Element::attributes() const {
  std::map<std::string, std::string> result;
  const Variant reply = call(bus, name, path, accessible, "GetAttributes", nullptr, "(a{ss})");
  if (!reply) return result;
  GVariantIter* list = nullptr;
  g_variant_get(reply.get(), "(a{ss})", &list);
  const char* key = nullptr;
  const char* value = nullptr;
  while (g_variant_iter_loop(list, "{&s&s}", &key, &value)) result[key] = value;
  g_variant_iter_free(list);
  return result;
}

std::string Element::content() const {
  const Variant reply =
      call(bus, name, path, "org.a11y.atspi.Text", "GetText", g_variant_new("(ii)", 0, -1), "(s)");
  if (!reply) return {};
  const char* value = nullptr;
  g_variant_get(reply.get(), "(&s)", &value);
  return value;
}

unsigned Element::process() const {
  const Variant reply =
      call(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
           "GetConnectionUnixProcessID", g_variant_new("(s)", name.c_str()), "(u)");
  guint32 id = 0;
  if (reply) g_variant_get(reply.get(), "(u)", &id);
  return id;
}

Element desktopOf(GDBusConnection* bus) {
  return {bus, "org.a11y.atspi.Registry", "/org/a11y/atspi/accessible/root"};
}

}  // namespace vellora::witness
