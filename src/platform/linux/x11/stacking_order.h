#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace vellora {

// A child of the root window, as far as the panel's place among them is concerned.
struct TopLevel {
  std::uint32_t window = 0;
  bool visible = false;   // mapped, and not one that only takes input
  bool managed = false;   // it is a window of the window manager's care, or the frame of one
  bool reserved = false;  // it asked window managers to leave it alone (override-redirect)

  bool operator==(const TopLevel&) const = default;
};

// A move of the panel in the stack.
struct Restacking {
  std::uint32_t sibling = 0;  // the window to lie directly above; 0: below all others
  std::uint32_t cause = 0;    // the window that the panel lies on the wrong side of

  bool operator==(const Restacking&) const = default;
};

// The move that brings the panel `own` to its place among all top-level windows, which are given
// the lowest first; nothing when it lies there already, as far as a person can see, or is not among
// them.
//
// Its place is above the managed windows and below those that are not: menus, tooltips,
// notifications, screen lockers. From `base`, the top-level that the captions belong to, it climbs
// over what is managed, to the first visible window that is not. Whatever is not managed and lies
// below `base` is covered by that anyway. Where `base` is not on the screen the climb begins at the
// lowest managed window, and where nothing is managed at all, as without a window manager, every
// window counts that one would manage.
//
// `givesWay` tells the windows that the panel is not to chase. One that it would climb over is
// then as if it were not there, but for `base`, which is never given way to. For one that belongs
// above it the panel gives up climbing: it goes below all others instead, and stays below the
// window at which the climb would begin.
std::optional<Restacking> restackingOf(std::uint32_t own, const std::vector<TopLevel>& windows,
                                       std::uint32_t base,
                                       const std::function<bool(std::uint32_t)>& givesWay);

}  // namespace vellora
