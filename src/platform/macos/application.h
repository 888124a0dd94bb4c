#pragma once

#include <memory>

#include "platform/application.h"

namespace vellora {

// The shared NSApplication, its run loop and dispatch queues.
std::unique_ptr<Application> makeAppKitApplication();

}  // namespace vellora
