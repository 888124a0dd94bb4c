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
// the compositor answers, for which it waits at most two seconds. Main thread.
SessionWindowSystem connectToSession();

}  // namespace vellora
