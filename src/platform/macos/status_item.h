#pragma once

#include <memory>

#import <AppKit/AppKit.h>

#include "platform/status_item.h"

namespace vellora {

// Takes an item of the system's status bar, which is removed with what this makes; null without
// one.
std::unique_ptr<StatusItem> makeMenuBarItem(NSStatusItem* item);

}  // namespace vellora
