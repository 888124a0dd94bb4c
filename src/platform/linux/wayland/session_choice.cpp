#include "platform/linux/wayland/session_choice.h"

#include <cstdlib>
#include <optional>
#include <string>

namespace vellora {
namespace {

std::string valueOf(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

}  // namespace

SessionChoice chooseForSession() {
  const std::string compositor = valueOf("WAYLAND_DISPLAY");
  const WindowSystemWishes wishes{!compositor.empty(), !valueOf("DISPLAY").empty(),
                                  valueOf("VELLORA_WINDOW_SYSTEM")};
  SessionChoice found;
  std::optional<WaylandOffer> offer;
  if (needsWaylandOffer(wishes)) {
    found.wayland = std::make_shared<WaylandSession>(compositor.c_str());
    if (found.wayland->present()) found.locator = makeWindowLocator();
    offer = {found.wayland->answered(), found.wayland->missing(), found.locator != nullptr};
  }
  found.choice = chooseWindowSystem(wishes, offer);
  if (found.choice.kind != WindowSystemKind::wayland) {
    found.wayland.reset();
    found.locator.reset();
  }
  return found;
}

}  // namespace vellora
