#pragma once

#include <cstddef>
#include <functional>
#include <vector>

#include "platform/linux/accessibility/accessible_queries.h"
#include "platform/linux/accessibility/accessible_store.h"
#include "platform/linux/accessibility/bus_connection.h"
#include "platform/player.h"
#include "platform/reading_limits.h"

namespace vellora {

// Asks in volleys what a walk that goes depth first, each element before its children, is about to
// ask one at a time: of as many elements as that walk can still visit, and in its order. Elements
// deeper than the walk goes are asked only when somebody wants to know of them.
class TreePrefetch {
 public:
  TreePrefetch(BusConnection& bus, AccessibleStore& store, AccessibleQueries& queries,
               const Player& player, const ReadingLimits& limits)
      : bus_(bus), store_(store), queries_(queries), player_(player), limits_(limits) {}

  // Role, properties and children of the element, which is at `depth`, and of what is below it: of
  // the first `most` elements in the walk's order. Begins no call after `end`, and waits for those
  // begun until `deadline`.
  void askFacts(NodeIndex top, int depth, std::size_t most, Steady::time_point end,
                Steady::time_point deadline);

  // Extents of the element, and of the rows and scroll areas that a walk which wants the extents
  // of this one will want next: those inside a scroll area; for another element those after it in
  // its parent, and, each time that this did not reach far enough, in one ancestor further up.
  void askExtents(NodeIndex node, std::size_t most, Steady::time_point deadline);

  // Extents of the window, and of what earlier readings wanted the extents of. `more` is told when
  // all these are lined up, and may line up what is to be asked beside them.
  void askKnownExtents(NodeIndex window, Steady::time_point deadline,
                       const std::function<void()>& more);

 private:
  struct Plan;
  struct Volley;
  bool mayHaveFrame(const AccessibleNode& node) const;  // that the walk wants
  void planFacts(NodeIndex node, int depth, Plan& plan);
  void planExtents(NodeIndex node, int depth, Volley& volley);
  void exchangeExtents(NodeIndex first, const std::vector<NodeIndex>& others,
                       Steady::time_point deadline, const std::function<void()>& more = {});

  BusConnection& bus_;
  AccessibleStore& store_;
  AccessibleQueries& queries_;
  const Player player_;
  const ReadingLimits limits_;
  std::size_t asked_ = 0;  // elements in all
  int climbs_ = 0;
};

}  // namespace vellora
