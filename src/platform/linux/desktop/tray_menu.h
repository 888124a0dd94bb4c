#pragma once

#include <vector>

#include <libdbusmenu-glib/dbusmenu-glib.h>

#include "platform/linux/desktop/glib_ptr.h"
#include "platform/status_item.h"

namespace vellora {

// A menu that tray hosts read over the session bus (com.canonical.dbusmenu, by libdbusmenu-glib)
// and show in their own way. Main thread.
class TrayMenu {
 public:
  static constexpr const char* objectPath = "/MenuBar";

  TrayMenu();

  // Replaces the menu. An entry without an action is shown disabled. A key equivalent is told as
  // the shortcut Control and that key: Control stands for the platform's command key here, and the
  // host honours it while it shows the menu.
  void setEntries(std::vector<MenuEntry> entries);

 private:
  GObjectPtr<DbusmenuServer> server_;
};

}  // namespace vellora
