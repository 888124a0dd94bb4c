#include "platform/linux/accessibility/application_lookup.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>

#include "platform/linux/accessibility/accessible_replies.h"
#include "platform/linux/accessibility/attribute_mapping.h"

namespace vellora {

namespace {

constexpr const char* registry = "org.a11y.atspi.Registry";
constexpr const char* registryRoot = "/org/a11y/atspi/accessible/root";
constexpr const char* driver = "org.freedesktop.DBus";
constexpr const char* driverPath = "/org/freedesktop/DBus";

// Which of a program's windows is active is asked of this many.
constexpr std::size_t mostWindows = 64;

bool answersGetAll(const std::optional<std::string>& toolkit) {
  return toolkit == "gtk" || toolkit == "GTK";
}

bool isActive(const AccessibleNode& window) {
  return window.moment.states.value.value_or(0) >> AtspiState::active & 1U;
}

}  // namespace

std::optional<NodeIndex> findApplication(BusConnection& bus, AccessibleStore& store,
                                         AccessibleQueries& queries, std::int32_t processIdentifier,
                                         Steady::time_point deadline) {
  const NodeIndex root = store.intern({registry, registryRoot}, std::nullopt);
  queries.askChildren(root);
  bus.exchange(deadline);
  const auto programs = store[root].facts.children.value.value_or(std::vector<NodeIndex>());

  std::vector<bool> isSought(programs.size());
  for (std::size_t i = 0; i < programs.size(); ++i) {
    BusMessagePtr call = bus.newCall(driver, driverPath, driver, "GetConnectionUnixProcessID");
    if (call) sd_bus_message_append(call.get(), "s", store[programs[i]].reference.bus.c_str());
    bus.send(std::move(call), [&isSought, i, processIdentifier](sd_bus_message* reply) {
      const auto found = readNumber(reply);
      isSought[i] = found && std::int64_t{*found} == processIdentifier;
    });
  }
  bus.exchange(deadline);
  const auto sought = std::ranges::find(isSought, true);
  if (sought == isSought.end()) return std::nullopt;
  return programs[static_cast<std::size_t>(sought - isSought.begin())];
}

std::vector<NodeIndex> findWindows(BusConnection& bus, AccessibleStore& store,
                                   AccessibleQueries& queries, NodeIndex application,
                                   Steady::time_point deadline) {
  const AccessibleReference program = store[application].reference;
  std::optional<std::string> toolkit;
  BusMessagePtr probe =
      bus.newCall(program.bus, program.path, "org.freedesktop.DBus.Properties", "Get");
  if (probe) {
    sd_bus_message_append(probe.get(), "ss", "org.a11y.atspi.Application", "ToolkitName");
  }
  bus.send(std::move(probe),
           [&toolkit](sd_bus_message* reply) { toolkit = readTextProperty(reply); });
  bus.exchange(deadline);
  if (answersGetAll(toolkit)) queries.setProgramThatAnswersAll(program.bus);

  queries.askProperties(application);
  bus.exchange(deadline);
  queries.askChildren(application);
  bus.exchange(deadline);
  auto windows = store[application].facts.children.value.value_or(std::vector<NodeIndex>());

  for (std::size_t i = 0; i < std::min(windows.size(), mostWindows); ++i) {
    queries.askStates(windows[i]);
  }
  bus.exchange(deadline);
  std::ranges::stable_partition(windows,
                                [&store](NodeIndex window) { return isActive(store[window]); });
  return windows;
}

}  // namespace vellora
