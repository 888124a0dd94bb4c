#pragma once

#include <cstdint>
#include <string>

#include "platform/linux/accessibility/bus_handles.h"

namespace vellora {

// A connection to a program's own D-Bus server, with no daemon between: it has no names, and says
// of no message whose it is. Null unless `address` (D-Bus specification, "Server Addresses") names
// one socket of this machine, at which that process listens: what a program in a container gives
// may be somebody else's socket out here, and is sent nothing then. No other kind of address is
// followed, as "unixexec:" would start a program. Does not wait: who listens is known at once,
// whether it will answer is not.
BusPtr openDirectLink(const std::string& address, std::int32_t processIdentifier);

}  // namespace vellora
