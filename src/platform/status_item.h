#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace vellora {

// One entry of the status item's menu: a separator, a label (no action, not selectable), or a
// command.
struct MenuEntry {
  bool separator = false;
  std::string title;
  std::string keyEquivalent;     // with the platform's command key, while the menu is open
  std::function<void()> action;  // main thread
};

// The program's item in the menu bar or the system tray. Main thread.
class StatusItem {
 public:
  virtual ~StatusItem() = default;

  // Whether there is a button to carry a title and a tooltip; without one both setters do nothing.
  virtual bool hasButton() const = 0;
  virtual void setTitle(std::string_view title) = 0;
  virtual void setToolTip(std::string_view toolTip) = 0;
  virtual void setMenu(std::vector<MenuEntry> entries) = 0;
};

}  // namespace vellora
