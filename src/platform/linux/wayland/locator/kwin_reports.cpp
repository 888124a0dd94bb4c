#include "platform/linux/wayland/locator/kwin_reports.h"

#include <cstddef>
#include <utility>

#include "platform/linux/wayland/locator/kwin_script.h"

namespace vellora {

namespace {

constexpr const char* introspection =
    "<node>"
    "  <interface name='org.vellora.KWinReports'>"
    "    <method name='Report'><arg name='windows' type='s' direction='in'/></method>"
    "  </interface>"
    "</node>";

// Longer than any list of windows.
constexpr std::size_t longestReport = std::size_t{1024} * 1024;

}  // namespace

KWinReports::KWinReports(SessionBus bus, Listener listener)
    : bus_(std::move(bus)), listener_(std::move(listener)) {
  const GNodeInfoPtr node(g_dbus_node_info_new_for_xml(introspection, nullptr));
  static constexpr GDBusInterfaceVTable calls{&KWinReports::called, nullptr, nullptr, {}};
  object_ = g_dbus_connection_register_object(
      bus_.get(), KWinReportInterface::objectPath,
      g_dbus_node_info_lookup_interface(node.get(), KWinReportInterface::interfaceName), &calls,
      this, nullptr, nullptr);
  name_ =
      g_bus_watch_name_on_connection(bus_.get(), "org.kde.KWin", G_BUS_NAME_WATCHER_FLAGS_NONE,
                                     &KWinReports::appeared, &KWinReports::vanished, this, nullptr);
}

KWinReports::~KWinReports() {
  g_bus_unwatch_name(name_);
  if (object_ != 0) g_dbus_connection_unregister_object(bus_.get(), object_);
}

void KWinReports::appeared(GDBusConnection*, const gchar*, const gchar* owner,
                           gpointer data) noexcept {
  auto& self = *static_cast<KWinReports*>(data);
  self.owner_ = owner;
  self.listener_.appeared();
}

void KWinReports::vanished(GDBusConnection*, const gchar*, gpointer data) noexcept {
  auto& self = *static_cast<KWinReports*>(data);
  self.owner_.clear();
  self.listener_.vanished();
}

void KWinReports::called(GDBusConnection*, const gchar* sender, const gchar*, const gchar*,
                         const gchar*, GVariant* arguments, GDBusMethodInvocation* invocation,
                         gpointer data) noexcept {
  auto& self = *static_cast<KWinReports*>(data);
  if (sender == nullptr || self.owner_.empty() || self.owner_ != sender) {
    g_dbus_method_invocation_return_error_literal(
        invocation, G_DBUS_ERROR, G_DBUS_ERROR_ACCESS_DENIED, "Only KWin reports windows.");
    return;
  }
  const GVariantPtr text(g_variant_get_child_value(arguments, 0));
  gsize length = 0;
  const char* const json = g_variant_get_string(text.get(), &length);
  if (length <= longestReport) self.listener_.reported(json);
  g_dbus_method_invocation_return_value(invocation, nullptr);
}

}  // namespace vellora
