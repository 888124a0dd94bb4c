#pragma once

#include <chrono>
#include <memory>

#include "platform/accessibility.h"
#include "platform/linux/players/player_windows.h"

namespace vellora {

// Accessibility over AT-SPI2. Trusted means that the session's accessibility bus is there and
// switched on (org.a11y.Status, IsEnabled); without that no element answers anything. The first
// `isTrusted` waits for the session bus, 250 ms at most, later ones do not wait. Asking for trust
// switches accessibility on and says on standard error what else the user may do. Works without a
// bus: it is not trusted then, and no element answers.
//
// An application element stands for one reading. It connects to the buses at its first query, and
// hands the connection on to the next reading when it and its elements are gone, with what is known
// of the program; `isTrusted` has a connection of its own. So a reading on another thread shares
// nothing with the main thread. Where GLib's main loop runs, a connection that no reading takes is
// closed after two to four seconds.
//
// `longestMemory` is how long a change that a program does not signal stays unseen at most.
//
// A program of `windows` whose descriptions say where its lyrics are answers as the player would.
// Without `windows`, and without such a description, programs show themselves.
inline constexpr std::chrono::steady_clock::duration usualMemory = std::chrono::seconds(1);
std::shared_ptr<Accessibility> makeLinuxAccessibility(
    std::chrono::steady_clock::duration longestMemory = usualMemory,
    std::shared_ptr<const PlayerWindows> windows = nullptr);

}  // namespace vellora
