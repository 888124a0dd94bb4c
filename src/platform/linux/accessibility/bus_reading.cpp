#include "platform/linux/accessibility/bus_reading.h"

#include <algorithm>
#include <utility>

#include "platform/linux/accessibility/application_lookup.h"
#include "platform/linux/accessibility/attribute_mapping.h"

namespace vellora {

std::shared_ptr<BusReading> BusReading::begin(ConnectionSlot& slot, std::int32_t processIdentifier,
                                              const Player& player, const ReadingLimits& limits) {
  const auto listing = steady(static_cast<double>(limits.messagingTimeout));
  LentConnection connection = slot.lend();
  const auto access = connection->prepare(processIdentifier, listing);
  if (!access) return nullptr;
  const std::shared_ptr<BusReading> reading(
      new BusReading(std::move(connection), *access, player, limits));
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
        prefetch_.askKnownExtents(index, *until);
      } else {
        prefetch_.askExtents(index, elementsLeft(), *until);
      }
    }
  }
  node(index).isFramed = true;
  return node(index).moment.extents.value;
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
