#include "platform/linux/accessibility/application_lookup.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "platform/linux/accessibility/accessible_replies.h"
#include "platform/linux/accessibility/attribute_mapping.h"
#include "platform/linux/players/process_family.h"

namespace vellora {

namespace {

constexpr const char* registry = "org.a11y.atspi.Registry";
constexpr const char* registryRoot = "/org/a11y/atspi/accessible/root";
constexpr const char* driver = "org.freedesktop.DBus";
constexpr const char* driverPath = "/org/freedesktop/DBus";

// Programs that the registry is asked for.
constexpr std::size_t mostPrograms = 1000;

// Which of a program's windows is active is asked of this many.
constexpr std::size_t mostWindows = 64;

bool isGtk(const std::optional<std::string>& toolkit) {
  return toolkit == "gtk" || toolkit == "GTK";
}

bool isActive(const AccessibleNode& window) {
  return window.moment.states.value.value_or(0) >> AtspiState::active & 1U;
}

// Of a GTK program: a menu or the list of a combo box. While it is open it is the active window,
// and the frame that it belongs to is not.
bool isPopup(const AccessibleNode& window) { return window.facts.role.value == AtspiRole::window; }

std::optional<std::string> askToolkit(BusConnection& bus, const AccessibleReference& root,
                                      Steady::time_point deadline) {
  std::optional<std::string> toolkit;
  BusMessagePtr call = bus.newCall(root.bus, root.path, "org.freedesktop.DBus.Properties", "Get");
  if (call) sd_bus_message_append(call.get(), "ss", "org.a11y.atspi.Application", "ToolkitName");
  bus.send(std::move(call),
           [&toolkit](sd_bus_message* reply) { toolkit = readTextProperty(reply); });
  bus.exchange(deadline);
  return toolkit;
}

// Of the first window alone, and then of the others, whose roles matter too, where they are not
// known: true when the first one answers.
bool askStates(BusConnection& bus, const AccessibleStore& store, AccessibleQueries& queries,
               const std::vector<NodeIndex>& windows, Steady::time_point deadline) {
  const std::size_t asked = std::min(windows.size(), mostWindows);
  for (std::size_t i = 0; i < asked; ++i) {
    queries.askStates(windows[i]);
    if (i == 0) bus.exchange(deadline);
  }
  for (std::size_t i = 0; asked > 1 && i < asked; ++i) {
    if (store[windows[i]].facts.role.isUnasked()) queries.askRole(windows[i]);
  }
  bus.exchange(deadline);
  return !windows.empty() && store[windows.front()].moment.states.value;
}

// A program that is busy painting answers again before it paints on, and then in time.
void awaitProgram(BusConnection& bus, const AccessibleReference& window,
                  Steady::time_point deadline) {
  AccessibleStore store;
  AccessibleQueries queries(bus, store, 0);
  queries.askStates(store.intern(window, std::nullopt));
  bus.exchange(deadline);
}

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

std::vector<NodeIndex> listWindows(BusConnection& bus, ProgramMemory& memory,
                                   AccessibleQueries& queries, const LookupTimes& times) {
  const auto deadline = Steady::now() + times.listing;
  const NodeIndex root = memory.root();
  queries.askProperties(root);
  bus.exchange(deadline);
  queries.askChildren(root);
  bus.exchange(deadline);
  const auto windows = memory.windows();
  askStates(bus, memory.store(), queries, windows, Steady::now() + times.waiting);
  return windows;
}

}  // namespace

std::optional<AccessibleReference> findProgram(BusConnection& bus, std::int32_t processIdentifier,
                                               Steady::time_point deadline) {
  AccessibleStore store;
  AccessibleQueries queries(bus, store, mostPrograms);
  const NodeIndex root = store.intern({registry, registryRoot}, std::nullopt);
  queries.askChildren(root);
  bus.exchange(deadline);
  const auto programs = store[root].facts.children.value.value_or(std::vector<NodeIndex>());

  std::vector<std::int64_t> processes(programs.size(), -1);
  for (std::size_t i = 0; i < programs.size(); ++i) {
    BusMessagePtr call = bus.newCall(driver, driverPath, driver, "GetConnectionUnixProcessID");
    if (call) sd_bus_message_append(call.get(), "s", store[programs[i]].reference.bus.c_str());
    bus.send(std::move(call), [&processes, i](sd_bus_message* reply) {
      if (const auto found = readNumber(reply)) processes[i] = *found;
    });
  }
  bus.exchange(deadline);
  auto sought = std::ranges::find(processes, std::int64_t{processIdentifier});
  if (sought == processes.end()) sought = findInContainer(processes, processIdentifier);
  if (sought == processes.end()) return std::nullopt;
  return store[programs[static_cast<std::size_t>(sought - processes.begin())]].reference;
}

std::vector<NodeIndex> findWindows(BusConnection& bus, ProgramMemory& memory,
                                   AccessibleQueries& queries, const LookupTimes& times) {
  const auto begin = Steady::now();
  memory.beginReading();
  if (memory.program()) bus.setPatientPeer(memory.program()->root.bus);
  bool isSlow = false;  // and so could not tell everything again in time
  if (const auto windows = memory.windows(); !windows.empty()) {
    if (askStates(bus, memory.store(), queries, windows, begin + times.waiting)) {
      isSlow = Steady::now() - begin > times.listing;
      memory.takeInChanges();
    } else if (bus.isSilent(memory.program()->root.bus)) {
      memory.noteSilence();
      return {};
    } else {
      memory.forgetProgram();
    }
  } else if (memory.lastWindow()) {
    awaitProgram(bus, *memory.lastWindow(), begin + times.waiting);
  }
  if (!isSlow) memory.forgetOld();

  auto windows = memory.windows();
  if (!memory.program()) {
    const auto deadline = Steady::now() + times.listing;
    auto root = findProgram(bus, memory.processIdentifier(), deadline);
    if (!root) return {};
    auto toolkit = askToolkit(bus, *root, deadline);
    memory.setProgram({std::move(*root), std::move(toolkit)});
    bus.setPatientPeer(memory.program()->root.bus);
  }
  const bool ofGtk = isGtk(memory.program()->toolkit);
  if (ofGtk) queries.setProgramThatAnswersAll(memory.program()->root.bus);
  if (windows.empty()) windows = listWindows(bus, memory, queries, times);
  if (windows.empty()) memory.forgetProgram();
  const AccessibleStore& store = memory.store();
  std::ranges::stable_partition(windows,
                                [&store](NodeIndex window) { return isActive(store[window]); });
  std::ranges::stable_partition(
      windows, [&](NodeIndex window) { return !ofGtk || !isPopup(store[window]); });
  memory.goDirect();
  return windows;
}

}  // namespace vellora
