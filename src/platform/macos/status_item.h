#pragma once

#include <memory>

#include "platform/status_item.h"

namespace vellora {

// A new item of variable length in the system's status bar; null when the bar gives none.
std::unique_ptr<StatusItem> makeMenuBarItem();

}  // namespace vellora
