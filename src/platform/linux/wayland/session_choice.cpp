#include "platform/linux/wayland/session_choice.h"

#include <optional>
#include <string>

#include "base/environment.h"

namespace vellora {

SessionChoice chooseForSession() {
  const auto compositor = environmentVariable("WAYLAND_DISPLAY");
  const WindowSystemWishes wishes{compositor.has_value(),
                                  environmentVariable("DISPLAY").has_value(),
                                  environmentVariable("VELLORA_WINDOW_SYSTEM").value_or("")};
  SessionChoice found;
  std::optional<WaylandOffer> offer;
  if (needsWaylandOffer(wishes)) {
    found.wayland = std::make_shared<WaylandSession>(compositor ? compositor->c_str() : nullptr);
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
