#include "platform/linux/tray/tray_menu.h"

#include <string>
#include <string_view>
#include <utility>

namespace vellora {
namespace {

using Action = std::function<void()>;

// An underscore marks the access key in a dbusmenu label; two are one that is shown.
std::string label(std::string_view title) {
  std::string text;
  for (const char c : title) text.append(c == '_' ? 2 : 1, c);
  return text;
}

// The shortcut property: a list of chords, each the modifiers and then the key (aas).
GVariant* shortcut(const std::string& key) {
  GVariantBuilder chord;
  g_variant_builder_init(&chord, G_VARIANT_TYPE_STRING_ARRAY);
  g_variant_builder_add(&chord, "s", DBUSMENU_MENUITEM_SHORTCUT_CONTROL);
  g_variant_builder_add(&chord, "s", key.c_str());
  GVariant* chords[] = {g_variant_builder_end(&chord)};
  return g_variant_new_array(G_VARIANT_TYPE_STRING_ARRAY, chords, 1);
}

void activated(DbusmenuMenuitem*, guint, gpointer action) noexcept {
  const Action held = *static_cast<Action*>(action);  // it may replace the menu that it stands in
  held();
}

GObjectPtr<DbusmenuMenuitem> makeItem(MenuEntry entry) {
  GObjectPtr<DbusmenuMenuitem> item(dbusmenu_menuitem_new());
  if (entry.separator) {
    dbusmenu_menuitem_property_set(item.get(), DBUSMENU_MENUITEM_PROP_TYPE, "separator");
    return item;
  }
  dbusmenu_menuitem_property_set(item.get(), DBUSMENU_MENUITEM_PROP_LABEL,
                                 label(entry.title).c_str());
  dbusmenu_menuitem_property_set_bool(item.get(), DBUSMENU_MENUITEM_PROP_ENABLED,
                                      entry.action ? TRUE : FALSE);
  if (!entry.keyEquivalent.empty()) {
    dbusmenu_menuitem_property_set_variant(item.get(), DBUSMENU_MENUITEM_PROP_SHORTCUT,
                                           shortcut(entry.keyEquivalent));
  }
  if (entry.action) {
    g_signal_connect_data(
        item.get(), DBUSMENU_MENUITEM_SIGNAL_ITEM_ACTIVATED, G_CALLBACK(activated),
        new Action(std::move(entry.action)),
        [](gpointer action, GClosure*) { delete static_cast<Action*>(action); }, GConnectFlags(0));
  }
  return item;
}

}  // namespace

// The server asks for the bus by itself and is on it later than its making; it emits its layout
// then. It gets no root before, so the first layout emitted is that one.
TrayMenu::TrayMenu(std::function<void()> ready)
    : ready_(std::move(ready)), server_(dbusmenu_server_new(objectPath)) {
  onBus_ = g_signal_connect(server_.get(), DBUSMENU_SERVER_SIGNAL_LAYOUT_UPDATED,
                            G_CALLBACK(&TrayMenu::appearedOnBus), this);
}

TrayMenu::~TrayMenu() {
  if (onBus_ != 0) g_signal_handler_disconnect(server_.get(), onBus_);
}

void TrayMenu::setEntries(std::vector<MenuEntry> entries) {
  root_.reset(dbusmenu_menuitem_new());
  for (auto& entry : entries) {
    dbusmenu_menuitem_child_append(root_.get(), makeItem(std::move(entry)).get());
  }
  if (onBus_ == 0) dbusmenu_server_set_root(server_.get(), root_.get());
}

void TrayMenu::appearedOnBus(DbusmenuServer* server, guint, gint, gpointer data) noexcept {
  auto& self = *static_cast<TrayMenu*>(data);
  g_signal_handler_disconnect(server, std::exchange(self.onBus_, 0));
  dbusmenu_server_set_root(server, self.root_.get());
  self.ready_();
}

}  // namespace vellora
