#pragma once

#include <cstdint>
#include <memory>

#include "platform/accessibility.h"
#include "platform/linux/accessibility/reading_connection.h"

namespace vellora {

// A program as a whole; answers "AXWindows" and nothing else. Each such query begins a reading of
// its own, with a connection from the slot.
std::shared_ptr<AccessibilityElement> makeApplicationElement(
    std::shared_ptr<ConnectionSlot> connections, std::int32_t processIdentifier,
    const Player& player, const ReadingLimits& limits);

}  // namespace vellora
