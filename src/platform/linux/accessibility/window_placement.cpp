#include "platform/linux/accessibility/window_placement.h"

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
}

Rect WindowPlacement::place(const AccessibleExtents& extents) const {
  return {extents.x / pixelsPerPoint_, extents.y / pixelsPerPoint_, extents.width / pixelsPerPoint_,
          extents.height / pixelsPerPoint_};
}

}  // namespace vellora
