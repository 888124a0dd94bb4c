#include "platform/linux/wayland/workspace/located_player.h"

#include <utility>

namespace vellora {

PlayerWindow locatedPlayer(const LocatedWindow& window, const std::vector<LocatedWindow>& all,
                           std::vector<PlayerDescriptionPtr> descriptions, double scale,
                           double largestScale) {
  PlayerWindow player;
  player.process = window.process;
  player.descriptions = std::move(descriptions);
  if (window.tellsScreenPositions) {
    // To X11 programs a point is a pixel, unless they scale themselves.
    player.clientArea = window.content;
    if (largestScale == 1) return player;
  } else {
    player.scale = scale;
  }
  player.surfaces.emplace();
  for (const LocatedWindow& one : all) {
    if (one.process != window.process || !one.isVisible) continue;
    SurfacePlace place{.content = one.content, .surface = one.surface};
    if (window.tellsScreenPositions) place.serversPixels = largestScale;
    player.surfaces->push_back(place);
  }
  return player;
}

}  // namespace vellora
