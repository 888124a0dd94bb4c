#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/linux/accessibility/accessible_queries.h"
#include "platform/linux/accessibility/accessible_store.h"
#include "platform/linux/accessibility/bus_connection.h"

namespace vellora {

// The root object of the process's program, found among the registry's programs by the process
// identifier that the bus knows of each. Nothing when no program of that process is on the bus.
std::optional<NodeIndex> findApplication(BusConnection& bus, AccessibleStore& store,
                                         AccessibleQueries& queries, std::int32_t processIdentifier,
                                         Steady::time_point deadline);

// The program's windows, the active one first and the others in the program's order. Their states
// are in the store then. One call goes ahead, so that a program that hangs gets no more than that.
std::vector<NodeIndex> findWindows(BusConnection& bus, AccessibleStore& store,
                                   AccessibleQueries& queries, NodeIndex application,
                                   Steady::time_point deadline);

}  // namespace vellora
