#pragma once

#include <vector>

#include "platform/linux/accessibility/accessible_queries.h"
#include "platform/linux/accessibility/bus_connection.h"
#include "platform/linux/accessibility/program_memory.h"

namespace vellora {

// The windows of the memory's process, the active one first and the others in the program's order,
// popups after all frames and dialogs; none when no program of that process is on the bus. Their
// states are in the memory's store then, which has no facts that have changed. The program is found
// among the registry's programs by the process identifier that the bus knows of each. One call goes
// to it ahead of the others, so that a program that hangs gets no more than that.
//
// `listing` is how long finding the program and listing its windows may take, and `waiting` how
// long each window's word on its state.
struct LookupTimes {
  Steady::duration listing;
  Steady::duration waiting;
};
std::vector<NodeIndex> findWindows(BusConnection& bus, ProgramMemory& memory,
                                   AccessibleQueries& queries, const LookupTimes& times);

}  // namespace vellora
