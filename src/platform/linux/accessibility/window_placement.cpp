#include "platform/linux/accessibility/window_placement.h"

#include <algorithm>
#include <cmath>

namespace vellora {

namespace {

// How far the frame is from having the window's size when a pixel of it is that many of the
// device's.
double misfit(const AccessibleExtents& frame, const Rect& clientArea, double pixels) {
  return std::abs(frame.width * pixels - clientArea.width) +
         std::abs(frame.height * pixels - clientArea.height);
}

}  // namespace

WindowPlacement::WindowPlacement(const AccessibleExtents& frame, const PlayerWindow& window) {
  if (!window.clientArea || !(window.scale > 0)) return;
  const bool isInDevicePixels =
      misfit(frame, *window.clientArea, 1) < misfit(frame, *window.clientArea, window.scale);
  if (isInDevicePixels) pixelsPerPoint_ = window.scale;
  if (frame.x != 0 || frame.y != 0) return;
  const Rect area{window.clientArea->x / window.scale, window.clientArea->y / window.scale,
                  window.clientArea->width / window.scale,
                  window.clientArea->height / window.scale};
  const Rect inside = place(frame);
  // A frame that has the window manager's decorations in it is larger: that window is at the
  // origin.
  constexpr double rounding = 1;
  if (inside.width > area.width + rounding || inside.height > area.height + rounding) return;
  const double border = std::max(0.0, (area.width - inside.width) / 2);
  const double below = std::max(0.0, area.height - inside.height);
  origin_ = {area.x + border, area.y + std::max(0.0, below - border)};
}

Rect WindowPlacement::place(const AccessibleExtents& extents) const {
  return {origin_.x + extents.x / pixelsPerPoint_, origin_.y + extents.y / pixelsPerPoint_,
          extents.width / pixelsPerPoint_, extents.height / pixelsPerPoint_};
}

}  // namespace vellora
