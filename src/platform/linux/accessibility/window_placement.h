#pragma once

#include "base/rect.h"
#include "platform/linux/accessibility/accessible_store.h"
#include "platform/linux/players/player_windows.h"

namespace vellora {

// How the positions that a program tells of its elements become points of the screen (the overlay's
// coordinates: origin at the top left, y downward). Toolkits tell them in device pixels or in
// logical ones; the size of the window, which the window system knows in device pixels, shows
// which. Some (GTK 4, and all where programs do not know where their windows are) tell them from
// the top left of the window, and so of the window itself that it is at the origin: then the window
// system's word for its place is added. What such a window has around the frame, in equal parts at
// its sides and as much below, belongs to the window's border.
class WindowPlacement {
 public:
  // `frame` are the extents that the program tells of the window itself.
  WindowPlacement(const AccessibleExtents& frame, const PlayerWindow& window);

  Rect place(const AccessibleExtents& extents) const;

 private:
  double pixelsPerPoint_ = 1;
  Point origin_;  // in points
};

}  // namespace vellora
