#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "platform/linux/accessibility/accessible_queries.h"
#include "platform/linux/accessibility/accessible_store.h"
#include "platform/linux/accessibility/reading_connection.h"
#include "platform/linux/accessibility/surface_placement.h"
#include "platform/linux/accessibility/tree_prefetch.h"

namespace vellora {

// One reading of a program's windows over the accessibility bus: what its elements have in common.
// It asks nothing twice, and nothing that an earlier reading found out and the program has
// signalled no change of (`ProgramMemory`). One thread at a time.
//
// Time: finding the program and listing its windows takes one messaging timeout at most each. The
// windows' states, a window's frame, and all that is in the window may take the time of a walk
// each, counted from the first question; a program that paints slowly answers in between. What is
// in a window is asked in volleys for the whole window at the first question about it. A program
// that lets such a time pass is asked no more until it answers.
class BusReading {
 public:
  // Finds the process's program and its windows; null when there are none to be read.
  // `surfaces` is as in PlayerWindow.
  static std::shared_ptr<BusReading> begin(ConnectionSlot& slot, std::int32_t processIdentifier,
                                           const Player& player, const ReadingLimits& limits,
                                           std::optional<std::vector<SurfacePlace>> surfaces = {});
  ~BusReading() { access_.memory.endReading(); }
  BusReading(const BusReading&) = delete;
  BusReading& operator=(const BusReading&) = delete;

  // The active one first.
  const std::vector<NodeIndex>& windows() const { return windows_; }

  // Nothing where the element does not answer. `depth` counts from the window.
  std::optional<bool> isIconified(NodeIndex window);
  std::optional<std::uint32_t> role(NodeIndex node, int depth);
  std::optional<AccessibleProperties> properties(NodeIndex node, int depth);
  std::optional<std::vector<NodeIndex>> children(NodeIndex node, int depth);
  std::optional<AccessibleExtents> extents(NodeIndex node, int depth);
  // In points of the screen; nothing also where it is not known where the window is.
  std::optional<Rect> frame(NodeIndex node, int depth, NodeIndex window);

 private:
  BusReading(LentConnection connection, ReadingConnection::Access access, const Player& player,
             const ReadingLimits& limits);

  AccessibleNode& node(NodeIndex index) { return access_.memory.store()[index]; }
  // Of a program that does not know where its windows are.
  const std::optional<SurfacePlacement>& placement(NodeIndex window);
  void lookForInset(NodeIndex window, SurfacePlacement& placement);
  std::vector<AccessibleExtents> extentsOf(const std::vector<NodeIndex>& nodes);
  void fetchFacts(NodeIndex node, int depth);
  std::size_t elementsLeft() const;
  // Until when a question that is put now may take; nothing when there is no time left to put it.
  std::optional<Steady::time_point> deadline() const;

  const LentConnection connection_;
  const ReadingConnection::Access access_;  // of connection_
  const std::size_t mostVisited_;
  const Steady::duration walkTime_;
  AccessibleQueries queries_;
  TreePrefetch prefetch_;
  std::vector<NodeIndex> windows_;
  std::optional<std::vector<SurfacePlace>> surfaces_;
  std::map<NodeIndex, std::optional<SurfacePlacement>> placements_;  // of windows
  std::optional<Steady::time_point> walkBegin_;
  std::size_t visited_ = 0;
};

}  // namespace vellora
