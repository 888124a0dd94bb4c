#pragma once

#include <optional>

#include "base/rect.h"
#include "platform/linux/accessibility/accessible_store.h"
#include "platform/linux/accessibility/surface_placement.h"
#include "platform/linux/accessibility/window_placement.h"
#include "platform/linux/players/player_windows.h"

namespace vellora {

// Where a described player's window and what is in it are on the screen, in points from its top
// left. Chromium tells of its window in logical pixels, but of the page in the device's (seen with
// two device pixels a logical one): a page that is not inside its window shows that.
class ContentPlacement {
 public:
  // `frame` and `page` are the extents that the program tells of the window and of the page in it.
  // `surface` is the frame's, where the window system knows places that the program does not.
  ContentPlacement(const AccessibleExtents& frame, const std::optional<AccessibleExtents>& page,
                   const PlayerWindow& window,
                   const std::optional<SurfacePlacement>& surface = std::nullopt);

  Rect window() const { return window_; }
  Rect place(const AccessibleExtents& extents) const;

 private:
  WindowPlacement placement_;
  std::optional<SurfacePlacement> surface_;
  Rect window_;
  std::optional<double> pixelsPerPoint_;  // of the page, where it is told in the device's pixels
};

}  // namespace vellora
