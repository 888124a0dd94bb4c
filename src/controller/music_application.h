#pragma once

#include <memory>
#include <string_view>

#include "platform/workspace.h"

namespace vellora {

// The player that the overlay follows.
inline constexpr std::string_view musicBundleIdentifier = "com.apple.Music";

// The player when it is the frontmost application; null when another one is, or none. Main thread.
std::shared_ptr<const RunningApplication> frontmostMusic(Workspace& workspace);

}  // namespace vellora
