#include "platform/linux/accessibility/application_lookup.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>

#include "platform/linux/accessibility/accessible_replies.h"
#include "platform/linux/accessibility/attribute_mapping.h"
#include "platform/linux/accessibility/program_registry.h"

namespace vellora {

namespace {

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
    auto found = findProgram(bus, memory.processIdentifier(), deadline);
    if (!found) return {};
    auto toolkit = askToolkit(bus, found->root, deadline);
    memory.setProgram({std::move(found->root), std::move(toolkit), std::move(found->registered)});
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
