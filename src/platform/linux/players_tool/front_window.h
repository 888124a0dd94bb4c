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
  std::string reason;                // why there is none
  std::vector<std::string> lines{};  // what there is to say of the window system that was asked
};

// Asks whom the overlay would ask in this session: the Wayland compositor, for four and a half
// seconds at most, or the X server. Main thread.
FrontWindowAnswer findFrontWindow(const std::vector<PlayerDescriptionPtr>& descriptions);

}  // namespace vellora
