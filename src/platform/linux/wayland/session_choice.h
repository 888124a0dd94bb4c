#pragma once

#include <memory>

#include "platform/linux/wayland/locator/window_locator.h"
#include "platform/linux/wayland/session/wayland_session.h"
#include "platform/linux/window_system/choice.h"

namespace vellora {

// The window system to use, and, where that is Wayland, what was found of it.
struct SessionChoice {
  WindowSystemChoice choice;
  std::shared_ptr<WaylandSession> wayland;  // null where Wayland is not used
  std::unique_ptr<WindowLocator> locator;   // the same
};

// By the environment and by what the compositor that it names and the session bus answer, for
// which it waits two and a half seconds at most. Main thread.
SessionChoice chooseForSession();

}  // namespace vellora
