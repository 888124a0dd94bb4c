#include "platform/linux/accessibility/bus_elements.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>

#include "platform/linux/accessibility/attribute_mapping.h"
#include "platform/linux/accessibility/bus_reading.h"
#include "platform/linux/accessibility/described_elements.h"
#include "platform/linux/accessibility/described_reading.h"

namespace vellora {

namespace {

AttributeValue text(const std::optional<std::string>& value) {
  return value ? AttributeValue(*value) : AttributeValue();
}

class BusElement final : public AccessibilityElement {
 public:
  BusElement(std::shared_ptr<BusReading> reading, NodeIndex node, int depth, NodeIndex window)
      : reading_(std::move(reading)), node_(node), depth_(depth), window_(window) {}

  AttributeValue attribute(std::string_view name) override {
    const auto source = attributeSource(name);
    if (!source) return {};
    switch (*source) {
      case AttributeSource::windows:
        return {};
      case AttributeSource::iconified:
        return iconified();
      case AttributeSource::role:
        return role();
      case AttributeSource::children:
        return children();
      case AttributeSource::position:
      case AttributeSource::size:
        return extents(*source);
      case AttributeSource::description:
      case AttributeSource::name:
      case AttributeSource::identifier:
        return property(*source);
    }
    return {};
  }

 private:
  AttributeValue iconified() {
    const auto flag = depth_ == 0 ? reading_->isIconified(node_) : std::nullopt;
    return flag ? AttributeValue(*flag) : AttributeValue();
  }

  AttributeValue role() {
    const auto number = reading_->role(node_, depth_);
    return number ? AttributeValue(std::string(roleText(*number))) : AttributeValue();
  }

  AttributeValue property(AttributeSource source) {
    const auto properties = reading_->properties(node_, depth_);
    if (!properties) return {};
    if (source == AttributeSource::description) return text(properties->description);
    if (source == AttributeSource::identifier) return text(properties->identifier);
    return text(properties->name);
  }

  AttributeValue children() {
    const auto nodes = reading_->children(node_, depth_);
    if (!nodes) return {};
    AccessibilityElements list;
    list.reserve(nodes->size());
    for (const NodeIndex child : *nodes) {
      list.push_back(std::make_shared<BusElement>(reading_, child, depth_ + 1, window_));
    }
    return list;
  }

  AttributeValue extents(AttributeSource source) {
    const auto found = reading_->frame(node_, depth_, window_);
    if (!found) return {};
    if (source == AttributeSource::position) return Point{found->x, found->y};
    return Size{found->width, found->height};
  }

  std::shared_ptr<BusReading> reading_;
  NodeIndex node_;
  int depth_;
  NodeIndex window_;  // that it is in
};

class BusApplicationElement final : public AccessibilityElement {
 public:
  BusApplicationElement(std::shared_ptr<ConnectionSlot> connections,
                        std::shared_ptr<const PlayerWindows> windows,
                        std::int32_t processIdentifier, const Player& player,
                        const ReadingLimits& limits)
      : connections_(std::move(connections)),
        windows_(std::move(windows)),
        processIdentifier_(processIdentifier),
        player_(player),
        limits_(limits) {}

  AttributeValue attribute(std::string_view name) override {
    if (attributeSource(name) != AttributeSource::windows) return {};
    const auto player = windows_ ? windows_->find(processIdentifier_) : std::nullopt;
    if (player && std::ranges::any_of(player->descriptions, hasLyrics)) return described(*player);
    const auto reading = BusReading::begin(*connections_, processIdentifier_, player_, limits_,
                                           player ? player->surfaces : std::nullopt);
    if (!reading) return {};
    AccessibilityElements list;
    for (const NodeIndex window : reading->windows()) {
      list.push_back(std::make_shared<BusElement>(reading, window, 0, window));
    }
    return list;
  }

 private:
  static bool hasLyrics(const PlayerDescriptionPtr& description) {
    return description->lyrics.has_value();
  }

  AttributeValue described(const PlayerWindow& window) {
    const LentConnection connection = connections_->lend();
    const auto timeout = steady(static_cast<double>(limits_.messagingTimeout));
    const auto access = connection->prepare(processIdentifier_, timeout);
    if (!access) return {};
    const auto layout = readDescribed(access->bus, connection->mediaPlayers(), access->described,
                                      window, connection->longestMemory(), limits_);
    if (!layout) return {};
    return AccessibilityElements{makeDescribedWindow(*layout, player_)};
  }

  const std::shared_ptr<ConnectionSlot> connections_;
  const std::shared_ptr<const PlayerWindows> windows_;
  const std::int32_t processIdentifier_;
  const Player player_;
  const ReadingLimits limits_;
};

}  // namespace

std::shared_ptr<AccessibilityElement> makeApplicationElement(
    std::shared_ptr<ConnectionSlot> connections, std::shared_ptr<const PlayerWindows> windows,
    std::int32_t processIdentifier, const Player& player, const ReadingLimits& limits) {
  return std::make_shared<BusApplicationElement>(std::move(connections), std::move(windows),
                                                 processIdentifier, player, limits);
}

}  // namespace vellora
