#include "music/lyrics_layout_reader.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>
#include <variant>

namespace vellora {

namespace {

AccessibilityElements elements(AccessibilityElement& element, std::string_view name) {
  AttributeValue value = attribute(element, name);
  auto* list = std::get_if<AccessibilityElements>(&value);
  return list != nullptr ? std::move(*list) : AccessibilityElements{};
}

// One walk through a window: depth first, each element before its children, so that of several
// title elements and scroll areas the last in that order wins.
class Walk {
 public:
  Walk(const Clock& clock, const Player& player, const ReadingLimits& limits, const Rect& window)
      : clock_(clock),
        player_(player),
        deadline_(clock.now() + limits.seconds),
        deepest_(limits.depth),
        budget_(limits.elements) {
    layout_.window = window;
  }

  void visit(AccessibilityElement& element, bool inLyrics, int depth) {
    if (isBeyondLimits(depth)) return;
    --budget_;

    const std::string role = string(element, AccessibilityAttribute::role);
    const std::string description = string(element, AccessibilityAttribute::description);
    const std::string title = string(element, AccessibilityAttribute::title);
    const std::string identifier = string(element, AccessibilityAttribute::identifier);

    if (identifier == player_.titleIdentifier) {
      layout_.title = description.empty() ? title : description;
    }
    inLyrics = inLyrics || description == player_.lyricsLabel || title == player_.lyricsLabel;
    if (inLyrics && role == player_.viewportRole) noteScrollArea(element);
    if (inLyrics && role == player_.rowRole) noteRow(element, title, description);

    for (const auto& child : elements(element, AccessibilityAttribute::children)) {
      if (child) visit(*child, inLyrics, depth + 1);
    }
  }

  MusicLayout finish() && {
    isTimeOver();  // while the last element was asked, perhaps
    std::ranges::stable_sort(layout_.rows, isAbove);
    return std::move(layout_);
  }

 private:
  bool isBeyondLimits(int depth) {
    if (budget_ < 1) return layout_.cut.byElements = true;
    if (depth > deepest_) return layout_.cut.byDepth = true;
    return isTimeOver();
  }

  bool isTimeOver() {
    const bool isOver = !(clock_.now() < deadline_);
    if (isOver) layout_.cut.byTime = true;
    return isOver;
  }

  void noteScrollArea(AccessibilityElement& element) {
    if (const auto area = frame(element)) layout_.viewport = area->intersection(layout_.window);
  }

  // A row prefers its title, the now-playing element its description: players fill them that way.
  void noteRow(AccessibilityElement& element, const std::string& title,
               const std::string& description) {
    const auto area = frame(element);
    if (!area) return;
    const std::string& text = title.empty() ? description : title;
    if (!text.empty()) layout_.rows.push_back({text, *area});
  }

  // A top that is not a number goes last: the sort needs an order.
  static bool isAbove(const MusicRow& a, const MusicRow& b) {
    const double top = a.frame.minY();
    const double otherTop = b.frame.minY();
    return top < otherTop || (std::isnan(otherTop) && !std::isnan(top));
  }

  const Clock& clock_;
  const Player& player_;
  const double deadline_;
  const int deepest_;
  int budget_;
  MusicLayout layout_;
};

}  // namespace

std::optional<MusicLayout> readMusic(std::int32_t pid, Accessibility& accessibility,
                                     const Clock& clock, const Player& player,
                                     const ReadingLimits& limits) {
  const auto application = accessibility.applicationElement(pid, player, limits);
  const auto windows = elements(*application, AccessibilityAttribute::windows);
  if (windows.empty() || !windows.front()) return std::nullopt;
  AccessibilityElement& window = *windows.front();

  const AttributeValue minimized = attribute(window, AccessibilityAttribute::minimized);
  if (const bool* flag = std::get_if<bool>(&minimized); flag != nullptr && *flag)
    return std::nullopt;
  const auto windowFrame = frame(window);
  if (!windowFrame) return std::nullopt;

  Walk walk(clock, player, limits, *windowFrame);
  walk.visit(window, false, 0);
  return std::move(walk).finish();
}

AttributeValue attribute(AccessibilityElement& element, std::string_view name) {
  return element.attribute(name);
}

std::string string(AccessibilityElement& element, std::string_view name) {
  AttributeValue value = attribute(element, name);
  auto* text = std::get_if<std::string>(&value);
  return text != nullptr ? std::move(*text) : std::string();
}

std::optional<Rect> frame(AccessibilityElement& element) {
  const AttributeValue position = attribute(element, AccessibilityAttribute::position);
  const auto* origin = std::get_if<Point>(&position);
  if (origin == nullptr) return std::nullopt;
  const AttributeValue extent = attribute(element, AccessibilityAttribute::size);
  const auto* size = std::get_if<Size>(&extent);
  if (size == nullptr) return std::nullopt;
  if (!(size->width > 0) || !(size->height > 0)) return std::nullopt;
  return Rect{origin->x, origin->y, size->width, size->height};
}

}  // namespace vellora
