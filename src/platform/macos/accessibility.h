#pragma once

#include <memory>

#include "platform/accessibility.h"

namespace vellora {

// The system's accessibility service, through the AXUIElement functions.
std::shared_ptr<Accessibility> makeAxAccessibility();

}  // namespace vellora
