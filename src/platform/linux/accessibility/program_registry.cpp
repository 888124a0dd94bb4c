#include "platform/linux/accessibility/program_registry.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>

#include "platform/linux/accessibility/accessible_replies.h"
#include "platform/linux/players/process_family.h"

namespace vellora {

namespace {

constexpr const char* registry = "org.a11y.atspi.Registry";
constexpr const char* registryRoot = "/org/a11y/atspi/accessible/root";
constexpr const char* driver = "org.freedesktop.DBus";
constexpr const char* driverPath = "/org/freedesktop/DBus";

// Programs that the registry is asked for.
constexpr std::size_t mostPrograms = 1000;

// A program in a container may have its connection by way of another process there, a proxy. That a
// process started another is no sign: a terminal is not what runs in it.
std::vector<std::int64_t>::iterator findInContainer(std::vector<std::int64_t>& processes,
                                                    std::int32_t process) {
  const std::string container = containerOf(process);
  if (container.empty()) return processes.end();
  return std::ranges::find_if(processes, [&container](std::int64_t other) {
    return other > 0 && other <= INT32_MAX &&
           containerOf(static_cast<std::int32_t>(other)) == container;
  });
}

}  // namespace

void askPrograms(BusConnection& bus, std::function<void(ProgramList registered)> told) {
  bus.send(bus.newCall(registry, registryRoot, "org.a11y.atspi.Accessible", "GetChildren"),
           [told = std::move(told)](sd_bus_message* reply) {
             told(readReferences(reply, mostPrograms));
           });
}

std::optional<RegisteredProgram> findProgram(BusConnection& bus, std::int32_t processIdentifier,
                                             Steady::time_point deadline) {
  ProgramList answer;
  askPrograms(bus, [&answer](ProgramList registered) { answer = std::move(registered); });
  bus.exchange(deadline);
  if (!answer) return std::nullopt;

  std::vector<std::int64_t> processes(answer->size(), -1);
  for (std::size_t i = 0; i < answer->size(); ++i) {
    BusMessagePtr call = bus.newCall(driver, driverPath, driver, "GetConnectionUnixProcessID");
    if (call) sd_bus_message_append(call.get(), "s", (*answer)[i].bus.c_str());
    bus.send(std::move(call), [&processes, i](sd_bus_message* reply) {
      if (const auto found = readNumber(reply)) processes[i] = *found;
    });
  }
  bus.exchange(deadline);
  auto sought = std::ranges::find(processes, std::int64_t{processIdentifier});
  if (sought == processes.end()) sought = findInContainer(processes, processIdentifier);
  if (sought == processes.end()) return std::nullopt;
  AccessibleReference root = (*answer)[static_cast<std::size_t>(sought - processes.begin())];
  return RegisteredProgram{.root = std::move(root), .registered = std::move(*answer)};
}

}  // namespace vellora
