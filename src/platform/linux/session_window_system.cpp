#include "platform/linux/session_window_system.h"

#include <utility>

#include "platform/linux/wayland/session_choice.h"
#include "platform/linux/wayland/wayland_window_system.h"
#include "platform/linux/x11/x_session.h"
#include "platform/linux/x11/x_window_system.h"

namespace vellora {

SessionWindowSystem connectToSession() {
  SessionChoice found = chooseForSession();
  switch (found.choice.kind) {
    case WindowSystemKind::wayland:
      return {
          std::make_unique<WaylandWindowSystem>(std::move(found.wayland), std::move(found.locator)),
          std::move(found.choice)};
    case WindowSystemKind::none:
      return {
          std::make_unique<WaylandWindowSystem>(std::make_shared<WaylandSession>(nullptr), nullptr),
          std::move(found.choice)};
    case WindowSystemKind::x11:
      break;
  }
  return {std::make_unique<XWindowSystem>(std::make_shared<XSession>(nullptr)),
          std::move(found.choice)};
}

}  // namespace vellora
