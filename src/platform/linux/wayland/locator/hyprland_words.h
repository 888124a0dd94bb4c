#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "platform/linux/wayland/locator/window_locator.h"

namespace vellora {

// What Hyprland answers to the requests of these names, each as JSON. Source: Hyprland's wiki,
// "IPC" and "Using hyprctl".
struct HyprlandAnswers {
  std::string_view monitors;
  std::string_view clients;
  std::string_view activeWindow;
};

// The windows in them, the active one first, then those that were active later. A window's place is
// the one that it has come to when its animation is over. Nothing where one of the texts is no such
// answer. Any thread.
std::optional<std::vector<LocatedWindow>> windowsInHyprlandAnswers(const HyprlandAnswers& answers);

}  // namespace vellora
