#pragma once

#include <vector>

#include "platform/linux/accessibility/accessible_queries.h"
#include "platform/linux/accessibility/bus_connection.h"
#include "platform/linux/accessibility/program_memory.h"

namespace vellora {

struct LookupTimes {
  Steady::duration listing;  // at most, for finding the program and for listing its windows
  Steady::duration waiting;  // at most, for each window's word on its state
};

// The windows of the memory's process, the active one first and the others in the program's order,
// a GTK program's popups after its frames and dialogs; none when no program of that process is on
// the bus. Their states are in the memory's store then, which has no facts that have changed. The
// program is found among the registry's programs by the process identifier that the bus knows of
// each. One call goes to it ahead of the others, so that a program that hangs gets no more than
// that.
std::vector<NodeIndex> findWindows(BusConnection& bus, ProgramMemory& memory,
                                   AccessibleQueries& queries, const LookupTimes& times);

}  // namespace vellora
