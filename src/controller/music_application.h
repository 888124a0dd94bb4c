#pragma once

#include <memory>

#include "platform/workspace.h"

namespace vellora {

// The player when it is the frontmost application; null when another one is, or none. Main thread.
std::shared_ptr<const RunningApplication> frontmostMusic(Workspace& workspace);

}  // namespace vellora
