#pragma once

#include <vector>

#include "platform/linux/players/player_windows.h"
#include "platform/linux/wayland/locator/window_locator.h"

namespace vellora {

// A window as the directory of players' windows has it, with all others of its process among `all`
// that can be seen. `scale` is that of the output that it is on, `largestScale` that of all
// outputs, by which X11 programs scale themselves where they do.
PlayerWindow locatedPlayer(const LocatedWindow& window, const std::vector<LocatedWindow>& all,
                           std::vector<PlayerDescriptionPtr> descriptions, double scale,
                           double largestScale);

}  // namespace vellora
