#include "platform/linux/desktop/tray_menu.h"

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

TrayMenu::TrayMenu() : server_(dbusmenu_server_new(objectPath)) { setEntries({}); }

void TrayMenu::setEntries(std::vector<MenuEntry> entries) {
  const GObjectPtr<DbusmenuMenuitem> root(dbusmenu_menuitem_new());
  for (auto& entry : entries) {
    dbusmenu_menuitem_child_append(root.get(), makeItem(std::move(entry)).get());
  }
  dbusmenu_server_set_root(server_.get(), root.get());
}

}  // namespace vellora
