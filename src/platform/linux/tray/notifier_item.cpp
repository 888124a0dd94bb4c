#include "platform/linux/tray/notifier_item.h"

#include <utility>

#include <unistd.h>

#include "platform/linux/tray/status_icon.h"

namespace vellora {
namespace {

constexpr const char* itemPath = "/StatusNotifierItem";
constexpr const char* itemInterface = "org.kde.StatusNotifierItem";
constexpr const char* trayName = "org.kde.StatusNotifierWatcher";
constexpr const char* trayPath = "/StatusNotifierWatcher";

// Activate and ContextMenu are left out on purpose: the item is a menu and nothing else, and a host
// that is told that there is no such method shows the menu.
constexpr const char* introspection =
    "<node>"
    "  <interface name='org.kde.StatusNotifierItem'>"
    "    <property name='Category' type='s' access='read'/>"
    "    <property name='Id' type='s' access='read'/>"
    "    <property name='Title' type='s' access='read'/>"
    "    <property name='Status' type='s' access='read'/>"
    "    <property name='WindowId' type='i' access='read'/>"
    "    <property name='IconName' type='s' access='read'/>"
    "    <property name='IconPixmap' type='a(iiay)' access='read'/>"
    "    <property name='OverlayIconName' type='s' access='read'/>"
    "    <property name='OverlayIconPixmap' type='a(iiay)' access='read'/>"
    "    <property name='AttentionIconName' type='s' access='read'/>"
    "    <property name='AttentionIconPixmap' type='a(iiay)' access='read'/>"
    "    <property name='AttentionMovieName' type='s' access='read'/>"
    "    <property name='ToolTip' type='(sa(iiay)ss)' access='read'/>"
    "    <property name='ItemIsMenu' type='b' access='read'/>"
    "    <property name='Menu' type='o' access='read'/>"
    "    <signal name='NewTitle'/>"
    "    <signal name='NewToolTip'/>"
    "  </interface>"
    "</node>";

GVariant* noPixmaps() { return g_variant_new_array(G_VARIANT_TYPE("(iiay)"), nullptr, 0); }

}  // namespace

NotifierItem::NotifierItem(SessionBus bus)
    : bus_(std::move(bus)),
      service_("org.kde.StatusNotifierItem-" + std::to_string(::getpid()) + "-1"),
      menu_([this] { watchForTrays(); }) {
  const GNodeInfoPtr node(g_dbus_node_info_new_for_xml(introspection, nullptr));
  static constexpr GDBusInterfaceVTable calls{nullptr, &NotifierItem::property, nullptr, {}};
  object_ = g_dbus_connection_register_object(
      bus_.get(), itemPath, g_dbus_node_info_lookup_interface(node.get(), itemInterface), &calls,
      this, nullptr, nullptr);
  // The request for the name goes out before any registration under it.
  name_ = g_bus_own_name_on_connection(bus_.get(), service_.c_str(), G_BUS_NAME_OWNER_FLAGS_NONE,
                                       nullptr, nullptr, nullptr, nullptr);
}

NotifierItem::~NotifierItem() {
  if (watch_ != 0) g_bus_unwatch_name(watch_);
  g_bus_unown_name(name_);
  if (object_ != 0) g_dbus_connection_unregister_object(bus_.get(), object_);
}

void NotifierItem::setTitle(std::string_view title) {
  if (std::exchange(title_, std::string(title)) != title) emit("NewTitle");
}

void NotifierItem::setToolTip(std::string_view toolTip) {
  if (std::exchange(toolTip_, std::string(toolTip)) != toolTip) emit("NewToolTip");
}

void NotifierItem::setMenu(std::vector<MenuEntry> entries) { menu_.setEntries(std::move(entries)); }

// Only once there is a menu to show: a tray that looks for it too early shows none.
void NotifierItem::watchForTrays() {
  watch_ = g_bus_watch_name_on_connection(bus_.get(), trayName, G_BUS_NAME_WATCHER_FLAGS_NONE,
                                          &NotifierItem::trayAppeared, nullptr, this, nullptr);
}

void NotifierItem::emit(const char* signal) const {
  g_dbus_connection_emit_signal(bus_.get(), nullptr, itemPath, itemInterface, signal, nullptr,
                                nullptr);
}

void NotifierItem::trayAppeared(GDBusConnection* bus, const gchar*, const gchar* owner,
                                gpointer self) noexcept {
  const auto& service = static_cast<NotifierItem*>(self)->service_;
  g_dbus_connection_call(bus, owner, trayPath, trayName, "RegisterStatusNotifierItem",
                         g_variant_new("(s)", service.c_str()), nullptr,
                         G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, nullptr, nullptr, nullptr);
}

GVariant* NotifierItem::property(GDBusConnection*, const gchar*, const gchar*, const gchar*,
                                 const gchar* name, GError**, gpointer data) noexcept {
  const auto& self = *static_cast<NotifierItem*>(data);
  const std::string_view asked(name);
  if (asked == "Category") return g_variant_new_string("ApplicationStatus");
  if (asked == "Id") return g_variant_new_string("vellora");
  if (asked == "Title") return g_variant_new_string(self.title_.c_str());
  if (asked == "Status") return g_variant_new_string("Active");
  if (asked == "WindowId") return g_variant_new_int32(0);
  if (asked == "IconPixmap") return statusIconPixmaps().release();
  if (asked == "ToolTip") {
    return g_variant_new("(s@a(iiay)ss)", "", noPixmaps(), self.toolTip_.c_str(), "");
  }
  if (asked == "ItemIsMenu") return g_variant_new_boolean(TRUE);
  if (asked == "Menu") return g_variant_new_object_path(TrayMenu::objectPath);
  if (asked.ends_with("Pixmap")) return noPixmaps();
  return g_variant_new_string("");  // names of icons and movies that there are none of
}

}  // namespace vellora
