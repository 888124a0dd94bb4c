#pragma once

#include <memory>

#include "platform/workspace.h"

namespace vellora {

// The desktop through NSWorkspace, NSRunningApplication and NSScreen.
std::unique_ptr<Workspace> makeAppKitWorkspace();

}  // namespace vellora
