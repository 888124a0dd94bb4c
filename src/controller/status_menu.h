#pragma once

#include <functional>
#include <string_view>
#include <vector>

#include "platform/status_item.h"

namespace vellora {

// What the status item shows of itself.
struct StatusItemTexts {
  static constexpr std::string_view title = "文";
  static constexpr std::string_view firstToolTip = "Vellora";
};

// The status item's menu: a label, a separator, the permission and the end. Main thread.
std::vector<MenuEntry> statusMenu(std::function<void()> requestAccess, std::function<void()> stop);

}  // namespace vellora
