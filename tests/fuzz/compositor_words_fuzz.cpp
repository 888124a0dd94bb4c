#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "fuzz/fuzz_input.h"
#include "fuzz/fuzz_targets.h"
#include "platform/linux/wayland/locator/hyprland_words.h"
#include "platform/linux/wayland/locator/i3_message.h"
#include "platform/linux/wayland/locator/i3_tree.h"
#include "platform/linux/wayland/locator/kwin_report.h"

namespace vellora {

namespace {

std::vector<I3Message> messagesIn(I3MessageReader& reader) {
  std::vector<I3Message> messages;
  while (auto message = reader.next()) messages.push_back(*std::move(message));
  return messages;
}

void requireSensible(const std::optional<std::vector<LocatedWindow>>& windows) {
  if (!windows) return;
  for (const LocatedWindow& window : *windows) {
    require(window.process > 0, "a window is some process's");
    const Rect& place = window.content;
    require(std::isfinite(place.x) && std::isfinite(place.y) && std::isfinite(place.width) &&
                std::isfinite(place.height),
            "a window has a place");
  }
}

}  // namespace

// What a compositor sends: the first byte says where it is cut in two.
void fuzzCompositorWords(std::string_view bytes) {
  if (bytes.empty()) return;
  const std::size_t cut = static_cast<unsigned char>(bytes[0]);
  bytes.remove_prefix(1);
  I3MessageReader whole;
  whole.take(bytes);
  const auto messages = messagesIn(whole);
  I3MessageReader parts;
  parts.take(bytes.substr(0, cut));
  auto others = messagesIn(parts);
  parts.take(bytes.substr(std::min(cut, bytes.size())));
  for (I3Message& message : messagesIn(parts)) others.push_back(std::move(message));
  require(others.size() == messages.size(), "a cut loses no message");
  for (std::size_t i = 0; i < messages.size(); ++i) {
    require(messages[i].payload == others[i].payload && messages[i].type == others[i].type,
            "a cut changes no message");
    requireSensible(windowsInI3Tree(messages[i].payload));
  }
  // Three answers of Hyprland's, each but the first after a byte that no JSON has.
  const std::size_t first = bytes.find('\x1f');
  const std::size_t second = first == bytes.npos ? first : bytes.find('\x1f', first + 1);
  if (second != bytes.npos) {
    requireSensible(windowsInHyprlandAnswers({bytes.substr(0, first),
                                              bytes.substr(first + 1, second - first - 1),
                                              bytes.substr(second + 1)}));
  }
  requireSensible(windowsInI3Tree(bytes));
  requireSensible(windowsInKWinReport(bytes));
}

}  // namespace vellora
