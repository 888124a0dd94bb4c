#include "platform/linux/accessibility/surface_search.h"

#include <algorithm>
#include <vector>

namespace vellora {

std::optional<SurfacePlacement> findSurface(ElementFacts& facts, ElementIndex frame,
                                            const PlayerWindow& window) {
  if (!window.surfaces) return std::nullopt;
  const auto& extents = facts.extents(frame).value;
  if (!extents) return std::nullopt;
  auto placement = SurfacePlacement::find(*extents, *window.surfaces);
  if (placement && placement->isPlain()) return std::nullopt;  // the client area says more
  ElementIndex level = frame;
  for (int depth = 0; placement && placement->lacksInset() && depth < deepestInset; ++depth) {
    const ElementList children = facts.children(level).value.value_or(ElementList());
    std::vector<AccessibleExtents> told;
    std::optional<ElementIndex> below;
    for (std::size_t i = 0; i < std::min(children.size(), mostAtLevel); ++i) {
      const auto& element = facts.extents(children[i]).value;
      if (!element) continue;
      told.push_back(*element);
      if (!below && isAsLarge(*element, *extents)) below = children[i];
    }
    if (placement->takeInset(told) || !below) break;
    level = *below;
  }
  return placement;
}

}  // namespace vellora
