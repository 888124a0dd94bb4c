#include "platform/linux/wayland/locator/kwin_report.h"

#include <algorithm>
#include <string>
#include <utility>

#include "platform/linux/wayland/locator/json_fields.h"

namespace vellora {

namespace {

using JsonFields::coordinate;
using JsonFields::field;
using JsonFields::Json;

// [x, y, width, height].
std::optional<Rect> rectOf(const Json& window, const char* key) {
  const Json* const numbers = field(window, key);
  if (numbers == nullptr || !numbers->is_array() || numbers->size() != 4) return std::nullopt;
  const auto x = coordinate(&(*numbers)[0]);
  const auto y = coordinate(&(*numbers)[1]);
  const auto width = coordinate(&(*numbers)[2]);
  const auto height = coordinate(&(*numbers)[3]);
  if (!x || !y || !width || !height) return std::nullopt;
  return Rect{*x, *y, *width, *height};
}

std::optional<LocatedWindow> windowOf(const Json& told) {
  LocatedWindow window;
  window.process = JsonFields::process(told, "process");
  const auto frame = rectOf(told, "frame");
  const auto buffer = rectOf(told, "buffer");
  if (window.process == 0 || !frame || !buffer) return std::nullopt;
  // The frame has KWin's title bar and borders, the buffer the program's own shadow.
  window.content = frame->intersection(*buffer);
  if (window.content.isEmpty()) window.content = *buffer;
  window.surface = *buffer;
  window.tellsScreenPositions = JsonFields::isTrue(told, "x11");
  const std::string name = JsonFields::text(told, "class");
  if (window.tellsScreenPositions) {
    window.names.classPart = name;
    window.areNamesInLowerCase = true;
  } else {
    window.names.applicationId = name;
  }
  window.isVisible = JsonFields::isTrue(told, "visible");
  window.isActive = JsonFields::isTrue(told, "active");
  return window;
}

}  // namespace

std::optional<std::vector<LocatedWindow>> windowsInKWinReport(std::string_view json) {
  const Json report = JsonFields::parse(json);
  if (!report.is_array()) return std::nullopt;
  std::vector<std::pair<double, LocatedWindow>> ranked;
  for (const Json& told : report) {
    if (auto window = windowOf(told)) {
      ranked.emplace_back(coordinate(field(told, "order")).value_or(0), *std::move(window));
    }
  }
  std::ranges::stable_sort(ranked, std::ranges::greater(), [](const auto& one) {
    return std::pair(one.second.isActive, one.first);
  });
  std::vector<LocatedWindow> windows;
  windows.reserve(ranked.size());
  for (auto& [order, window] : ranked) windows.push_back(std::move(window));
  return windows;
}

}  // namespace vellora
