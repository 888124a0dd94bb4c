#include "platform/linux/session_window_system.h"

#include <cstdlib>
#include <string>
#include <utility>

#include "platform/linux/wayland/locator/window_locator.h"
#include "platform/linux/wayland/session/wayland_session.h"
#include "platform/linux/wayland/wayland_window_system.h"
#include "platform/linux/x11/x_session.h"
#include "platform/linux/x11/x_window_system.h"

namespace vellora {
namespace {

std::string valueOf(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

}  // namespace

SessionWindowSystem connectToSession() {
  const std::string compositor = valueOf("WAYLAND_DISPLAY");
  const WindowSystemWishes wishes{!compositor.empty(), !valueOf("DISPLAY").empty(),
                                  valueOf("VELLORA_WINDOW_SYSTEM")};
  std::shared_ptr<WaylandSession> session;
  std::unique_ptr<WindowLocator> locator;
  std::optional<WaylandOffer> offer;
  if (needsWaylandOffer(wishes)) {
    session = std::make_shared<WaylandSession>(compositor.c_str());
    if (session->present()) locator = makeWindowLocator();
    offer = {session->answered(), session->missing(), locator != nullptr};
  }
  WindowSystemChoice choice = chooseWindowSystem(wishes, offer);
  switch (choice.kind) {
    case WindowSystemKind::wayland:
      return {std::make_unique<WaylandWindowSystem>(std::move(session), std::move(locator)),
              std::move(choice)};
    case WindowSystemKind::none:
      return {
          std::make_unique<WaylandWindowSystem>(std::make_shared<WaylandSession>(nullptr), nullptr),
          std::move(choice)};
    case WindowSystemKind::x11:
      break;
  }
  return {std::make_unique<XWindowSystem>(std::make_shared<XSession>(nullptr)), std::move(choice)};
}

}  // namespace vellora
