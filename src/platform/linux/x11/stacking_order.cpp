#include "platform/linux/x11/stacking_order.h"

#include <algorithm>

namespace vellora {

std::optional<Restacking> restackingOf(std::uint32_t own, const std::vector<TopLevel>& windows,
                                       std::uint32_t base,
                                       const std::function<bool(std::uint32_t)>& gaveWay) {
  const auto isManaged = [](const TopLevel& each) { return each.managed; };
  const bool anyManaged = std::any_of(windows.begin(), windows.end(), isManaged);
  const auto counts = [&](const TopLevel& each) {
    return each.visible && each.window != own && !gaveWay(each.window);
  };
  const auto climbable = [&](const TopLevel& each) {
    return anyManaged ? each.managed : !each.reserved;
  };

  const auto panel = std::find_if(windows.begin(), windows.end(),
                                  [&](const TopLevel& each) { return each.window == own; });
  if (panel == windows.end()) return std::nullopt;
  auto start = std::find_if(windows.begin(), windows.end(), [&](const TopLevel& each) {
    return each.window == base && each.managed && counts(each);
  });
  if (start == windows.end()) {
    start = std::find_if(windows.begin(), windows.end(),
                         [&](const TopLevel& each) { return counts(each) && climbable(each); });
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
