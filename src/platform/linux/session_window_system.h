#pragma once

#include <memory>

#include "platform/linux/window_system/choice.h"
#include "platform/linux/window_system/window_system.h"

namespace vellora {

struct SessionWindowSystem {
  std::unique_ptr<WindowSystem> system;  // never null
  WindowSystemChoice choice;
};

// The window system of the session that the program was started in, by its environment and by what
// the compositor and the session bus answer, for which it waits two and a half seconds at most.
// Main thread.
SessionWindowSystem connectToSession();

}  // namespace vellora
