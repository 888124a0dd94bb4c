#include "platform/linux/wayland/locator/hyprland_words.h"

#include <algorithm>
#include <limits>
#include <map>
#include <set>
#include <string>
#include <utility>

#include "platform/linux/wayland/locator/json_fields.h"

namespace vellora {

namespace {

using JsonFields::coordinate;
using JsonFields::field;
using JsonFields::Json;

// A number that a workspace, a monitor or a place in a list may have.
std::optional<double> number(const Json& object, const char* key) {
  return coordinate(field(object, key));
}

std::optional<double> idIn(const Json& object, const char* key) {
  const Json* const inner = field(object, key);
  return inner == nullptr ? std::nullopt : number(*inner, "id");
}

std::optional<Point> pairIn(const Json& object, const char* key) {
  const Json* const two = field(object, key);
  if (two == nullptr || !two->is_array() || two->size() != 2) return std::nullopt;
  const auto first = coordinate(&(*two)[0]);
  const auto second = coordinate(&(*two)[1]);
  if (!first || !second) return std::nullopt;
  return Point{*first, *second};
}

struct Monitors {
  std::map<double, std::string> names;
  std::set<double> shownWorkspaces;
};

Monitors monitorsIn(const Json& list) {
  Monitors monitors;
  for (const Json& told : list) {
    if (const auto id = number(told, "id")) monitors.names[*id] = JsonFields::text(told, "name");
    for (const char* const key : {"activeWorkspace", "specialWorkspace"}) {
      const auto id = idIn(told, key);
      if (id && *id != 0) monitors.shownWorkspaces.insert(*id);  // 0: no special one is shown
    }
  }
  return monitors;
}

std::optional<LocatedWindow> windowOf(const Json& told, const Monitors& monitors) {
  LocatedWindow window;
  window.process = JsonFields::process(told, "pid");
  const auto at = pairIn(told, "at");
  const auto size = pairIn(told, "size");
  if (window.process == 0 || !at || !size) return std::nullopt;
  window.content = {at->x, at->y, size->x, size->y};
  window.tellsScreenPositions = JsonFields::isTrue(told, "xwayland");
  (window.tellsScreenPositions ? window.names.classPart : window.names.applicationId) =
      JsonFields::text(told, "class");
  const auto workspace = idIn(told, "workspace");
  const bool isOnShown = workspace && monitors.shownWorkspaces.contains(*workspace);
  window.isVisible = JsonFields::isTrue(told, "mapped") && !JsonFields::isTrue(told, "hidden") &&
                     (isOnShown || JsonFields::isTrue(told, "pinned"));
  if (const auto monitor = number(told, "monitor")) {
    const auto found = monitors.names.find(*monitor);
    if (found != monitors.names.end()) window.output = found->second;
  }
  return window;
}

}  // namespace

std::optional<std::vector<LocatedWindow>> windowsInHyprlandAnswers(const HyprlandAnswers& answers) {
  const Json monitorList = JsonFields::parse(answers.monitors);
  const Json clientList = JsonFields::parse(answers.clients);
  const Json activeWindow = JsonFields::parse(answers.activeWindow);
  if (!monitorList.is_array() || !clientList.is_array() || !activeWindow.is_object()) {
    return std::nullopt;
  }
  const Monitors monitors = monitorsIn(monitorList);
  const std::string active = JsonFields::text(activeWindow, "address");
  std::vector<std::pair<double, LocatedWindow>> ranked;
  for (const Json& told : clientList) {
    auto window = windowOf(told, monitors);
    if (!window) continue;
    window->isActive = !active.empty() && JsonFields::text(told, "address") == active;
    // 0 had the keyboard last, -1 never.
    const double focused = number(told, "focusHistoryID").value_or(-1);
    const double rank = focused < 0 ? std::numeric_limits<double>::infinity() : focused;
    ranked.emplace_back(window->isActive ? -1 : rank, *std::move(window));
  }
  std::ranges::stable_sort(ranked, {}, [](const auto& one) { return one.first; });
  std::vector<LocatedWindow> windows;
  windows.reserve(ranked.size());
  for (auto& [rank, window] : ranked) windows.push_back(std::move(window));
  return windows;
}

}  // namespace vellora
