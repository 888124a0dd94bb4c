#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/linux/players/player_descriptions.h"
#include "platform/linux/wayland/locator/window_locator.h"
#include "platform/player.h"

namespace vellora {

// What program a window is of.
struct WindowIdentity {
  std::vector<PlayerDescriptionPtr> descriptions;  // that name it
  // The player's where a description names the window; otherwise the window's own name where it has
  // the form of an application identifier.
  std::optional<std::string> identifier;

  bool isPlayer() const { return identifier == musicPlayer.identifier; }
};

// Where a compositor tells names in lower case only, those that differ in that alone are the same.
WindowIdentity identityOf(const LocatedWindow& window,
                          const std::vector<PlayerDescriptionPtr>& descriptions);

}  // namespace vellora
