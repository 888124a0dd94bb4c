#pragma once

#include <cstdint>
#include <memory>

#include "platform/accessibility.h"
#include "platform/linux/accessibility/reading_connection.h"
#include "platform/linux/players/player_windows.h"

namespace vellora {

// A program as a whole; answers "AXWindows" and nothing else. Each such query begins a reading of
// its own, with a connection from the slot. A program whose window is one of `windows` and has a
// description that says where its lyrics are shows them as the player does; any other is read as it
// is. `windows` may be null.
std::shared_ptr<AccessibilityElement> makeApplicationElement(
    std::shared_ptr<ConnectionSlot> connections, std::shared_ptr<const PlayerWindows> windows,
    std::int32_t processIdentifier, const Player& player, const ReadingLimits& limits);

}  // namespace vellora
