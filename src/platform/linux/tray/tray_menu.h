#pragma once

#include <functional>
#include <vector>

#include <libdbusmenu-glib/dbusmenu-glib.h>

#include "platform/linux/glib/glib_ptr.h"
#include "platform/status_item.h"

namespace vellora {

// A menu that tray hosts read over the session bus (com.canonical.dbusmenu, by libdbusmenu-glib)
// and show in their own way. Main thread.
class TrayMenu {
 public:
  static constexpr const char* objectPath = "/MenuBar";

  // `ready` is called from the event loop, once, as soon as the menu is there for a tray to read.
  explicit TrayMenu(std::function<void()> ready);
  ~TrayMenu();
  TrayMenu(const TrayMenu&) = delete;
  TrayMenu& operator=(const TrayMenu&) = delete;

  // Replaces the menu. An entry without an action is shown disabled. A key equivalent is told as
  // the shortcut Control and that key: Control stands for the platform's command key here. What a
  // host makes of a shortcut is its own; most only show it.
  void setEntries(std::vector<MenuEntry> entries);

 private:
  static void appearedOnBus(DbusmenuServer* server, guint revision, gint parent,
                            gpointer self) noexcept;

  std::function<void()> ready_;
  GObjectPtr<DbusmenuMenuitem> root_{dbusmenu_menuitem_new()};
  GObjectPtr<DbusmenuServer> server_;
  gulong onBus_ = 0;  // the handler that waits for the bus; 0 once the menu is there
};

}  // namespace vellora
