#include "platform/linux/window_system/choice.h"

namespace vellora {
namespace {

constexpr auto variable = "VELLORA_WINDOW_SYSTEM";

bool isKnown(const std::string& forced) { return forced == "x11" || forced == "wayland"; }

// Why Wayland cannot be used; empty when it can.
std::string obstacle(const WindowSystemWishes& wishes, const WaylandOffer& offer) {
  if (!wishes.namesWayland) return "WAYLAND_DISPLAY is not set";
  if (!offer.answers) return "the compositor that WAYLAND_DISPLAY names does not answer";
  if (!offer.missing.empty()) return "the compositor does not offer " + offer.missing;
  if (!offer.tellsPlaces) return "this compositor is not known to tell where windows are";
  return "";
}

}  // namespace

bool needsWaylandOffer(const WindowSystemWishes& wishes) {
  return wishes.namesWayland && wishes.forced != "x11";
}

WindowSystemChoice chooseWindowSystem(const WindowSystemWishes& wishes,
                                      const std::optional<WaylandOffer>& offer) {
  WindowSystemChoice choice;
  if (!wishes.forced.empty() && !isKnown(wishes.forced)) {
    choice.lines.push_back(std::string(variable) + " is \"" + wishes.forced +
                           "\", which is neither x11 nor wayland, and does not count.");
  }
  if (wishes.forced == "x11") {
    choice.lines.push_back(std::string("using X11, as ") + variable + " says.");
    return choice;
  }
  const bool forced = wishes.forced == "wayland";
  if (!wishes.namesWayland && !forced) return choice;
  const std::string reason = obstacle(wishes, offer.value_or(WaylandOffer{}));
  if (reason.empty()) {
    choice.kind = WindowSystemKind::wayland;
    choice.lines.push_back(forced ? std::string("using Wayland, as ") + variable + " says."
                                  : "using Wayland.");
  } else if (forced) {
    choice.kind = WindowSystemKind::none;
    choice.lines.push_back("Wayland cannot be used, as " + std::string(variable) +
                           " says: " + reason + ".");
  } else if (wishes.namesX11) {
    choice.lines.push_back("using X11, and seeing X11 programs only: " + reason + ".");
  } else {
    choice.lines.push_back("Wayland cannot be used: " + reason + ".");
  }
  return choice;
}

}  // namespace vellora
