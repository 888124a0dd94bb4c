#pragma once

#include <optional>
#include <string>
#include <vector>

namespace vellora {

enum class WindowSystemKind { x11, wayland, none };

// What the environment says of window systems.
struct WindowSystemWishes {
  bool namesWayland = false;  // WAYLAND_DISPLAY has a value
  bool namesX11 = false;      // DISPLAY has one
  std::string forced;         // the value of VELLORA_WINDOW_SYSTEM
};

// What the Wayland compositor was found to be.
struct WaylandOffer {
  bool answers = false;
  std::string missing;       // an interface that it lacks and that a panel needs, if any
  bool tellsPlaces = false;  // somebody tells where windows are
};

struct WindowSystemChoice {
  WindowSystemKind kind = WindowSystemKind::x11;
  // Sentences for whoever started the program; none where nothing needs to be said.
  std::vector<std::string> lines;
  bool operator==(const WindowSystemChoice&) const = default;
};

// Whether the choice depends on what the compositor is.
bool needsWaylandOffer(const WindowSystemWishes& wishes);

// `offer` counts only where it is needed; nothing is as an offer of nothing. Wayland where a
// compositor is named that has all that is needed, else X11, unless one of them is forced. Whoever
// names no compositor and forces nothing is told nothing.
WindowSystemChoice chooseWindowSystem(const WindowSystemWishes& wishes,
                                      const std::optional<WaylandOffer>& offer);

}  // namespace vellora
