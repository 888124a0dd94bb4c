#include "platform/linux/wayland/locator/i3_tree.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <string>
#include <utility>

#include "platform/linux/wayland/locator/json_fields.h"

namespace vellora {

namespace {

using JsonFields::coordinate;
using JsonFields::field;
using JsonFields::Json;

// Deeper than people split their screens.
constexpr int deepest = 100;

std::optional<Rect> rectOf(const Json& node, const char* key) {
  const Json* const rect = field(node, key);
  if (rect == nullptr) return std::nullopt;
  const auto x = coordinate(field(*rect, "x"));
  const auto y = coordinate(field(*rect, "y"));
  const auto width = coordinate(field(*rect, "width"));
  const auto height = coordinate(field(*rect, "height"));
  if (!x || !y || !width || !height) return std::nullopt;
  return Rect{*x, *y, *width, *height};
}

// The children, those that had the keyboard later first, as far as the node tells.
std::vector<const Json*> childrenOf(const Json& node) {
  std::vector<const Json*> children;
  for (const char* const key : {"floating_nodes", "nodes"}) {
    const Json* const list = field(node, key);
    if (list == nullptr || !list->is_array()) continue;
    for (const Json& child : *list) children.push_back(&child);
  }
  const Json* const focus = field(node, "focus");
  if (focus == nullptr || !focus->is_array()) return children;
  std::map<Json, std::size_t> places;
  for (const Json& id : *focus) {
    if (id.is_number_integer()) places.emplace(id, places.size());
  }
  const auto rank = [&places](const Json& child) {
    const Json* const id = field(child, "id");
    const auto place = id == nullptr ? places.end() : places.find(*id);
    return place == places.end() ? places.size() : place->second;
  };
  std::vector<std::pair<std::size_t, const Json*>> ranked;
  ranked.reserve(children.size());
  for (const Json* const child : children) {
    ranked.emplace_back(rank(*child), child);
  }
  std::ranges::stable_sort(ranked, {}, [](const auto& one) { return one.first; });
  std::ranges::transform(ranked, children.begin(), [](const auto& one) { return one.second; });
  return children;
}

std::optional<LocatedWindow> windowOf(const Json& node, const std::string& output) {
  LocatedWindow window;
  window.process = JsonFields::process(node, "pid");
  const auto place = rectOf(node, "rect");
  const auto inside = rectOf(node, "window_rect");
  if (window.process == 0 || !place || !inside) return std::nullopt;
  window.content = {place->x + inside->x, place->y + inside->y, inside->width, inside->height};
  window.names.applicationId = JsonFields::text(node, "app_id");
  const Json* const properties = field(node, "window_properties");
  window.tellsScreenPositions =
      properties != nullptr || JsonFields::text(node, "shell") == "xwayland";
  if (properties != nullptr) window.names.classPart = JsonFields::text(*properties, "class");
  if (!output.empty()) window.output = output;
  window.isActive = JsonFields::isTrue(node, "focused");
  const Json* const visible = field(node, "visible");
  window.isVisible = visible == nullptr || JsonFields::isTrue(node, "visible");
  return window;
}

void takeWindows(const Json& node, const std::string& output, int depth,
                 std::vector<LocatedWindow>& windows) {
  if (depth > deepest) return;
  const std::string here =
      JsonFields::text(node, "type") == "output" ? JsonFields::text(node, "name") : output;
  if (auto window = windowOf(node, here)) windows.push_back(*std::move(window));
  for (const Json* const child : childrenOf(node)) takeWindows(*child, here, depth + 1, windows);
}

}  // namespace

std::optional<std::vector<LocatedWindow>> windowsInI3Tree(std::string_view json) {
  const Json tree = JsonFields::parse(json);
  if (JsonFields::text(tree, "type") != "root") return std::nullopt;
  std::vector<LocatedWindow> windows;
  takeWindows(tree, {}, 0, windows);
  std::ranges::stable_partition(windows, &LocatedWindow::isActive);
  return windows;
}

}  // namespace vellora
