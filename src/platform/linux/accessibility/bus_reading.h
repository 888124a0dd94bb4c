#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "platform/linux/accessibility/accessible_queries.h"
#include "platform/linux/accessibility/accessible_store.h"
#include "platform/linux/accessibility/reading_connection.h"
#include "platform/linux/accessibility/tree_prefetch.h"

namespace vellora {

// One reading of a program's windows over the accessibility bus: what its elements have in common.
// It asks nothing twice, and nothing that an earlier reading found out and the program has
// signalled no change of (`ProgramMemory`). One thread at a time.
//
// Time: finding the program and listing its windows takes one messaging timeout at most each. The
// windows' states, a window's frame, and all that is in the window may take 0.3 s each, counted
// from the first question; a program that paints slowly answers in between. What is in a window is
// asked in volleys for the whole window at the first question about it. A program that lets such a
// time pass is asked no more until it answers.
class BusReading {
 public:
  // `timeout` is that of listing the windows, and of any program but the one that is read.
  BusReading(std::shared_ptr<ConnectionSlot> slot, Steady::duration timeout);
  ~BusReading();
  BusReading(const BusReading&) = delete;
  BusReading& operator=(const BusReading&) = delete;

  // Comes first, once. Nothing is asked of any element before it.
  std::vector<NodeIndex> windows(std::int32_t processIdentifier);

  // Nothing where the element does not answer. `depth` counts from the window.
  std::optional<bool> isIconified(NodeIndex window);
  std::optional<std::uint32_t> role(NodeIndex node, int depth);
  std::optional<AccessibleProperties> properties(NodeIndex node, int depth);
  std::optional<std::vector<NodeIndex>> children(NodeIndex node, int depth);
  std::optional<AccessibleExtents> extents(NodeIndex node, int depth);

 private:
  void fetchFacts(NodeIndex node, int depth);
  std::size_t elementsLeft() const;
  // Until when a question that is put now may take; nothing when there is no time left to put it.
  std::optional<Steady::time_point> deadline() const;

  std::shared_ptr<ConnectionSlot> slot_;
  Steady::duration timeout_;
  std::unique_ptr<ReadingConnection> connection_;
  BusConnection* bus_ = nullptr;     // of connection_; null when nothing can be asked
  ProgramMemory* memory_ = nullptr;  // of connection_; there when windows were
  std::optional<AccessibleQueries> queries_;
  std::optional<TreePrefetch> prefetch_;
  std::optional<Steady::time_point> walkBegin_;
  std::size_t visited_ = 0;
};

}  // namespace vellora
