#include "platform/linux/accessibility/bus_reading.h"

#include <algorithm>
#include <utility>

#include "platform/linux/accessibility/application_lookup.h"
#include "platform/linux/accessibility/attribute_mapping.h"

namespace vellora {

namespace {

// A walk takes 0.3 s; a slow program leaves it the second half to visit what was fetched. What is
// asked before it may take as long: whether the program answers, and the frames that are known to
// be wanted.
constexpr auto walkTime = std::chrono::milliseconds(300);
constexpr auto prefetchTime = std::chrono::milliseconds(150);

constexpr std::size_t mostVisited = 700;

}  // namespace

BusReading::BusReading(std::shared_ptr<ConnectionSlot> slot, Steady::duration timeout)
    : slot_(std::move(slot)), timeout_(timeout), connection_(slot_->take()) {}

BusReading::~BusReading() {
  if (memory_) memory_->endReading();
  slot_->keep(std::move(connection_));
}

std::vector<NodeIndex> BusReading::windows(std::int32_t processIdentifier) {
  bus_ = connection_->prepare(processIdentifier, timeout_);
  if (!bus_) return {};
  memory_ = &connection_->memory();
  queries_.emplace(*bus_, memory_->store());
  prefetch_.emplace(*bus_, memory_->store(), *queries_);
  return findWindows(*bus_, *memory_, *queries_, {.listing = timeout_, .waiting = walkTime});
}

std::optional<bool> BusReading::isIconified(NodeIndex window) {
  const auto& states = memory_->store()[window].moment.states.value;
  if (!states) return std::nullopt;
  return (*states >> AtspiState::iconified & 1U) != 0;
}

std::optional<std::uint32_t> BusReading::role(NodeIndex node, int depth) {
  ++visited_;
  fetchFacts(node, depth);
  return memory_->store()[node].facts.role.value;
}

std::optional<AccessibleProperties> BusReading::properties(NodeIndex node, int depth) {
  fetchFacts(node, depth);
  return memory_->store()[node].facts.properties.value;
}

std::optional<std::vector<NodeIndex>> BusReading::children(NodeIndex node, int depth) {
  fetchFacts(node, depth);
  if (memory_->store()[node].facts.children.isUnasked()) {
    if (const auto until = deadline()) {
      queries_->askChildren(node);
      bus_->exchange(*until);
    }
  }
  return memory_->store()[node].facts.children.value;
}

std::optional<AccessibleExtents> BusReading::extents(NodeIndex node, int depth) {
  if (memory_->store()[node].moment.extents.isUnasked()) {
    if (const auto until = deadline()) {
      if (depth == 0 || !walkBegin_) {
        prefetch_->askKnownExtents(node, *until);
      } else {
        prefetch_->askExtents(node, elementsLeft(), *until);
      }
    }
  }
  memory_->store()[node].isFramed = true;
  return memory_->store()[node].moment.extents.value;
}

void BusReading::fetchFacts(NodeIndex node, int depth) {
  if (!walkBegin_) walkBegin_ = Steady::now();
  const AccessibleFacts& facts = memory_->store()[node].facts;
  if (!facts.role.isUnasked() && !facts.properties.isUnasked()) return;
  const auto until = deadline();
  if (!until) return;
  prefetch_->askFacts(node, depth, elementsLeft(), *walkBegin_ + prefetchTime,
                      *walkBegin_ + walkTime);
  if (memory_->store()[node].facts.role.isUnasked()) queries_->askRole(node);
  if (memory_->store()[node].facts.properties.isUnasked()) queries_->askProperties(node);
  bus_->exchange(*until);
}

std::size_t BusReading::elementsLeft() const {
  return mostVisited - std::min(visited_, mostVisited) + 1;  // the present one is among the visited
}

std::optional<Steady::time_point> BusReading::deadline() const {
  const auto now = Steady::now();
  if (!bus_ || bus_->isBroken()) return std::nullopt;
  const auto until = walkBegin_.value_or(now) + walkTime;
  if (now >= until) return std::nullopt;
  return until;
}

}  // namespace vellora
