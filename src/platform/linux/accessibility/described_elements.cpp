#include "platform/linux/accessibility/described_elements.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "platform/linux/accessibility/attribute_mapping.h"

namespace vellora {

namespace {

struct Shown {
  std::string_view role;
  std::string title{};
  std::string description{};
  std::string identifier{};
  std::optional<Rect> frame{};
  std::optional<bool> isIconified{};
  AccessibilityElements children{};
};

class DescribedElement final : public AccessibilityElement {
 public:
  explicit DescribedElement(Shown shown) : shown_(std::move(shown)) {}

  AttributeValue attribute(std::string_view name) override {
    const auto source = attributeSource(name);
    if (!source) return {};
    switch (*source) {
      case AttributeSource::windows:
        return {};
      case AttributeSource::iconified:
        return shown_.isIconified ? AttributeValue(*shown_.isIconified) : AttributeValue();
      case AttributeSource::role:
        return std::string(shown_.role);
      case AttributeSource::description:
        return shown_.description;
      case AttributeSource::name:
        return shown_.title;
      case AttributeSource::identifier:
        return shown_.identifier;
      case AttributeSource::children:
        return shown_.children;
      case AttributeSource::position:
        if (!shown_.frame) return {};
        return Point{shown_.frame->x, shown_.frame->y};
      case AttributeSource::size:
        if (!shown_.frame) return {};
        return Size{shown_.frame->width, shown_.frame->height};
    }
    return {};
  }

 private:
  const Shown shown_;
};

std::shared_ptr<AccessibilityElement> make(Shown shown) {
  return std::make_shared<DescribedElement>(std::move(shown));
}

}  // namespace

std::shared_ptr<AccessibilityElement> makeDescribedWindow(const DescribedLayout& layout,
                                                          const Player& player) {
  AccessibilityElements inside;
  if (!layout.title.empty()) {
    inside.push_back(make({.role = AccessibilityRole::staticText,
                           .description = layout.title,
                           .identifier = std::string(player.titleIdentifier)}));
  }
  if (layout.hasView) {
    AccessibilityElements rows;
    for (const DescribedRow& row : layout.rows) {
      rows.push_back(make({.role = player.rowRole, .title = row.text, .frame = row.frame}));
    }
    inside.push_back(make({.role = player.viewportRole,
                           .title = std::string(player.lyricsLabel),
                           .frame = layout.viewport,
                           .children = std::move(rows)}));
  }
  return make({.role = AccessibilityRole::window,
               .frame = layout.window,
               .isIconified = layout.isIconified,
               .children = std::move(inside)});
}

}  // namespace vellora
