#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/linux/players/player_descriptions.h"
#include "platform/linux/players/player_windows.h"

namespace vellora {

// The window that is in front.
struct FrontWindow {
  WindowNames names;
  PlayerWindow player;  // its process and place; with the descriptions that name it, or none
};

struct FrontWindowAnswer {
  std::optional<FrontWindow> window;
  std::string reason;  // why there is none
};

// Asks the compositor that WAYLAND_DISPLAY names, where one of its kind can tell, for two seconds
// at most; else, or where VELLORA_WINDOW_SYSTEM is "x11", the X server that DISPLAY names. Main
// thread.
FrontWindowAnswer findFrontWindow(const std::vector<PlayerDescriptionPtr>& descriptions);

}  // namespace vellora
