#include "platform/linux/wayland/workspace/located_player.h"

#include <utility>

namespace vellora {

PlayerWindow locatedPlayer(const LocatedWindow& window, const std::vector<LocatedWindow>& all,
                           std::vector<PlayerDescriptionPtr> descriptions, double scale) {
  PlayerWindow player;
  player.process = window.process;
  player.descriptions = std::move(descriptions);
  if (window.tellsScreenPositions) {
    // To X11 programs a point is a pixel.
    player.clientArea = window.content;
    return player;
  }
  player.scale = scale;
  player.surfaces.emplace();
  for (const LocatedWindow& one : all) {
    if (one.process != window.process || !one.isVisible) continue;
    player.surfaces->push_back({.content = one.content, .surface = one.surface});
  }
  return player;
}

}  // namespace vellora
