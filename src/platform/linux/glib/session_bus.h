#pragma once

#include <chrono>

#include "platform/linux/glib/glib_ptr.h"

namespace vellora {

using SessionBus = GObjectPtr<GDBusConnection>;

// The process's one connection to the session bus (D-Bus Specification, "Message Bus"); null where
// no bus answers within `patience`; a bus that has not answered by then is waited for no longer,
// and is there for later calls once it has. Looks only where DBUS_SESSION_BUS_ADDRESS and
// XDG_RUNTIME_DIR point and never starts a bus. The program goes on when the bus goes away; then
// the result is null until nobody holds the connection that was closed. Main thread.
inline constexpr std::chrono::milliseconds busPatience{1000};
SessionBus connectToSessionBus(std::chrono::milliseconds patience = busPatience);

}  // namespace vellora
