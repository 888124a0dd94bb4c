#include "platform/linux/x11/stacking_order.h"

#include <algorithm>

namespace vellora {

std::optional<Restacking> restackingOf(std::uint32_t own, const std::vector<TopLevel>& windows,
                                       std::uint32_t base,
                                       const std::function<bool(std::uint32_t)>& givesWay) {
  const auto isManaged = [](const TopLevel& each) { return each.managed; };
  const bool anyManaged = std::ranges::any_of(windows, isManaged);
  const auto climbable = [&](const TopLevel& each) {
    return anyManaged ? each.managed : !each.reserved;
  };
  const auto counts = [&](const TopLevel& each) {
    if (!each.visible || each.window == own) return false;
    return each.window == base || !climbable(each) || !givesWay(each.window);
  };

  const auto panel =
      std::ranges::find_if(windows, [&](const TopLevel& each) { return each.window == own; });
  if (panel == windows.end()) return std::nullopt;
  auto start = std::ranges::find_if(windows, [&](const TopLevel& each) {
    return each.window == base && each.managed && counts(each);
  });
  if (start == windows.end()) {
    start = std::ranges::find_if(
        windows, [&](const TopLevel& each) { return counts(each) && climbable(each); });
  }
  const bool chased = std::ranges::any_of(windows, [&](const TopLevel& each) {
    return counts(each) && !climbable(each) && givesWay(each.window);
  });
  if (chased) {
    if (start == windows.end() || panel < start) return std::nullopt;
    const auto wrong = std::find_if(
        start, panel, [&](const TopLevel& each) { return counts(each) && !climbable(each); });
    if (wrong == panel) return std::nullopt;
    return Restacking{0, wrong->window};
  }
  auto sibling = windows.end();
  for (auto each = start; each != windows.end(); ++each) {
    if (!counts(*each)) continue;
    if (!climbable(*each)) break;
    sibling = each;
  }

  if (sibling != windows.end() && panel < sibling)
    return Restacking{sibling->window, sibling->window};
  const auto wrong =
      std::find_if(sibling == windows.end() ? windows.begin() : sibling + 1, panel, counts);
  if (wrong == panel) return std::nullopt;
  return Restacking{sibling == windows.end() ? 0 : sibling->window, wrong->window};
}

}  // namespace vellora
