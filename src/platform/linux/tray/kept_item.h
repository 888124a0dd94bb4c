#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/linux/glib/bus_watch.h"
#include "platform/linux/tray/notifier_item.h"
#include "platform/status_item.h"

namespace vellora {

// The item in the system tray, made anew with what it shows whenever a new session bus has taken
// the place of one that went away. Main thread.
class KeptItem : public StatusItem {
 public:
  KeptItem();

  bool hasButton() const override { return true; }
  void setTitle(std::string_view title) override;
  void setToolTip(std::string_view toolTip) override;
  void setMenu(std::vector<MenuEntry> entries) override;

 private:
  void make(const SessionBus& bus);

  std::string title_;
  std::string toolTip_;
  std::vector<MenuEntry> entries_;
  std::unique_ptr<NotifierItem> item_;  // null while there is no bus
  BusWatch watch_;
};

// Null where there is no session bus now. One at a time: the item's place on the bus is free again
// when the item is gone. Main thread.
std::unique_ptr<StatusItem> makeNotifierItem();

}  // namespace vellora
