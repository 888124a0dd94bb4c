#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "platform/linux/accessibility/accessible_store.h"
#include "platform/linux/accessibility/bus_connection.h"

namespace vellora {

// The root objects of programs in the registry's order; nothing where it gave no answer.
using ProgramList = std::optional<std::vector<AccessibleReference>>;

// Lines up the question for the programs that the registry knows.
void askPrograms(BusConnection& bus, std::function<void(ProgramList registered)> told);

struct RegisteredProgram {
  AccessibleReference root;
  std::vector<AccessibleReference> registered;  // all of them
};

// The program of a process: of the registry's programs the first one whose connection to the bus
// has that process identifier. Nothing when there is none.
std::optional<RegisteredProgram> findProgram(BusConnection& bus, std::int32_t processIdentifier,
                                             Steady::time_point deadline);

}  // namespace vellora
