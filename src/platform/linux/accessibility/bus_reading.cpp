#include "platform/linux/accessibility/bus_reading.h"

#include <algorithm>
#include <utility>

#include "platform/linux/accessibility/application_lookup.h"
#include "platform/linux/accessibility/attribute_mapping.h"

namespace vellora {

std::shared_ptr<BusReading> BusReading::begin(ConnectionSlot& slot, std::int32_t processIdentifier,
                                              const Player& player, const ReadingLimits& limits,
                                              std::optional<std::vector<SurfacePlace>> surfaces) {
  const auto listing = steady(static_cast<double>(limits.messagingTimeout));
  LentConnection connection = slot.lend();
  const auto access = connection->prepare(processIdentifier, listing);
  if (!access) return nullptr;
  const std::shared_ptr<BusReading> reading(
      new BusReading(std::move(connection), *access, player, limits));
  reading->surfaces_ = std::move(surfaces);
  reading->windows_ = findWindows(access->bus, access->memory, reading->queries_,
                                  {.listing = listing, .waiting = reading->walkTime_});
  return reading->windows_.empty() ? nullptr : reading;
}

BusReading::BusReading(LentConnection connection, ReadingConnection::Access access,
                       const Player& player, const ReadingLimits& limits)
    : connection_(std::move(connection)),
      access_(access),
      mostVisited_(static_cast<std::size_t>(limits.elements)),
      walkTime_(steady(limits.seconds)),
      queries_(access_.bus, access_.memory.store(), mostVisited_),
      prefetch_(access_.bus, access_.memory.store(), queries_, player, limits) {}

std::optional<bool> BusReading::isIconified(NodeIndex window) {
  const auto& states = node(window).moment.states.value;
  if (!states) return std::nullopt;
  return (*states >> AtspiState::iconified & 1U) != 0;
}

std::optional<std::uint32_t> BusReading::role(NodeIndex index, int depth) {
  ++visited_;
  fetchFacts(index, depth);
  return node(index).facts.role.value;
}

std::optional<AccessibleProperties> BusReading::properties(NodeIndex index, int depth) {
  fetchFacts(index, depth);
  return node(index).facts.properties.value;
}

std::optional<std::vector<NodeIndex>> BusReading::children(NodeIndex index, int depth) {
  fetchFacts(index, depth);
  if (node(index).facts.children.isUnasked()) {
    if (const auto until = deadline()) {
      queries_.askChildren(index);
      access_.bus.exchange(*until);
    }
  }
  return node(index).facts.children.value;
}

std::optional<AccessibleExtents> BusReading::extents(NodeIndex index, int depth) {
  if (node(index).moment.extents.isUnasked()) {
    if (const auto until = deadline()) {
      if (depth == 0 || !walkBegin_) {
        prefetch_.askKnownExtents(index, *until, [this] { access_.memory.renew(queries_); });
      } else {
        prefetch_.askExtents(index, elementsLeft(), *until);
      }
    }
  }
  node(index).isFramed = true;
  return node(index).moment.extents.value;
}

std::optional<Rect> BusReading::frame(NodeIndex index, int depth, NodeIndex window) {
  const auto told = extents(index, depth);
  if (!told) return std::nullopt;
  if (!surfaces_) return rectOf(*told);
  const auto& place = placement(window);
  if (!place) return std::nullopt;
  return index == window ? place->window() : place->place(rectOf(*told));
}

const std::optional<SurfacePlacement>& BusReading::placement(NodeIndex window) {
  const auto known = placements_.find(window);
  if (known != placements_.end()) return known->second;
  const auto told = extents(window, 0);
  auto found = told ? SurfacePlacement::find(*told, *surfaces_) : std::nullopt;
  if (found && found->lacksInset()) lookForInset(window, *found);
  return placements_.emplace(window, found).first->second;
}

void BusReading::lookForInset(NodeIndex window, SurfacePlacement& placement) {
  const AccessibleExtents frame = *node(window).moment.extents.value;
  NodeIndex level = window;
  for (int depth = 0; depth < deepestInset; ++depth) {
    auto below = children(level, depth).value_or(std::vector<NodeIndex>());
    below.resize(std::min(below.size(), mostAtLevel));
    if (placement.takeInset(extentsOf(below))) return;
    const auto large = std::ranges::find_if(below, [&](NodeIndex index) {
      const auto& extents = node(index).moment.extents.value;
      return extents && isAsLarge(*extents, frame);
    });
    if (large == below.end()) return;
    level = *large;
  }
}

std::vector<AccessibleExtents> BusReading::extentsOf(const std::vector<NodeIndex>& nodes) {
  const auto until = deadline();
  for (const NodeIndex index : nodes) {
    if (until && node(index).moment.extents.isUnasked()) queries_.askExtents(index);
    node(index).isFramed = true;
  }
  if (until) access_.bus.exchange(*until);
  std::vector<AccessibleExtents> told;
  for (const NodeIndex index : nodes) {
    if (const auto& extents = node(index).moment.extents.value) told.push_back(*extents);
  }
  return told;
}

void BusReading::fetchFacts(NodeIndex index, int depth) {
  if (!walkBegin_) walkBegin_ = Steady::now();
  const AccessibleFacts& facts = node(index).facts;
  if (!facts.role.isUnasked() && !facts.properties.isUnasked()) return;
  const auto until = deadline();
  if (!until) return;
  // A slow program leaves the walk the second half of its time to visit what was fetched.
  prefetch_.askFacts(index, depth, elementsLeft(), *walkBegin_ + walkTime_ / 2, *until);
  if (node(index).facts.role.isUnasked()) queries_.askRole(index);
  if (node(index).facts.properties.isUnasked()) queries_.askProperties(index);
  access_.bus.exchange(*until);
}

std::size_t BusReading::elementsLeft() const {
  // The present one is among the visited.
  return mostVisited_ - std::min(visited_, mostVisited_) + 1;
}

std::optional<Steady::time_point> BusReading::deadline() const {
  const auto now = Steady::now();
  if (access_.bus.isBroken()) return std::nullopt;
  const auto until = walkBegin_.value_or(now) + walkTime_;
  if (now >= until) return std::nullopt;
  return until;
}

}  // namespace vellora
