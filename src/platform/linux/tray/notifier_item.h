#pragma once

#include <memory>
#include <string>

#include "platform/linux/glib/session_bus.h"
#include "platform/linux/tray/tray_menu.h"
#include "platform/status_item.h"

namespace vellora {

// The program's item in the system tray: the StatusNotifierItem interface of freedesktop.org as the
// tray hosts of today speak it (org.kde.StatusNotifierItem). The tray may come, go and come back;
// the item is there as long as the bus and registers with each one that appears. Main thread.
class NotifierItem : public StatusItem {
 public:
  explicit NotifierItem(SessionBus bus);
  ~NotifierItem() override;
  NotifierItem(const NotifierItem&) = delete;
  NotifierItem& operator=(const NotifierItem&) = delete;

  // The item carries title and tooltip whether or not a tray shows it.
  bool hasButton() const override { return true; }
  // The tray shows the picture of 文; the title is what its own settings call the item.
  void setTitle(std::string_view title) override;
  void setToolTip(std::string_view toolTip) override;
  void setMenu(std::vector<MenuEntry> entries) override;

 private:
  static GVariant* property(GDBusConnection* bus, const gchar* sender, const gchar* path,
                            const gchar* interface, const gchar* name, GError** error,
                            gpointer self) noexcept;
  static void trayAppeared(GDBusConnection* bus, const gchar* name, const gchar* owner,
                           gpointer self) noexcept;

  void watchForTrays();
  void emit(const char* signal) const;

  SessionBus bus_;
  std::string service_;
  std::string title_;
  std::string toolTip_;
  TrayMenu menu_;
  guint object_ = 0;
  guint name_ = 0;
  guint watch_ = 0;
};

}  // namespace vellora
