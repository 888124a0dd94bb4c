#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "base/rect.h"
#include "platform/linux/accessibility/accessible_store.h"
#include "platform/linux/players/player_windows.h"

namespace vellora {

// Where the elements of a window are whose program does not know where it is. What such programs
// tell counts from the top left of the surface, or of what the window system takes for the window
// in it; toolkits differ (seen on Wayland): GTK 4 and Qt tell positions without the shadow that
// they draw, GTK 3 and Chromium with it and of the window itself that it has the surface's size,
// Firefox with it and of the window itself that it is inside.
class SurfacePlacement {
 public:
  // `frame` are the extents that the program tells of the window itself. Nothing where it is none
  // of the windows in `surfaces`: two that have the same size are taken for the first.
  static std::optional<SurfacePlacement> find(const AccessibleExtents& frame,
                                              const std::vector<SurfacePlace>& surfaces);

  // Whether the program's positions are the screen's already, in points.
  bool isPlain() const { return pixelsPerPoint_ == 1 && isOnScreen_; }

  // Whether the elements in the window have to say where in the frame the window's content begins:
  // the frame has a shadow, and nobody knows how broad that is at which side. Until they have, it
  // is taken to be as broad at opposite sides.
  bool lacksInset() const { return lacksInset_; }
  // One level of the elements in the frame: theirs are the content's extents where together they
  // have its size.
  bool takeInset(const std::vector<AccessibleExtents>& elements);

  // In points.
  Rect window() const { return content_; }
  // `extents` is in the program's positions, of whatever kind they are.
  Rect place(const Rect& extents) const;

 private:
  SurfacePlacement(const AccessibleExtents& frame, const SurfacePlace& surface);
  static SurfacePlacement onScreen(const AccessibleExtents& frame,
                                   const std::vector<SurfacePlace>& surfaces);

  AccessibleExtents frame_;
  Rect content_;
  Point origin_;  // of the program's positions, in points
  bool lacksInset_ = false;
  bool isOnScreen_ = false;    // that is where the program's positions count from
  double pixelsPerPoint_ = 1;  // of these
};

// How far into a window its content is looked for: in Chromium's the third level has it.
inline constexpr int deepestInset = 4;
// Elements of a level that are looked at.
inline constexpr std::size_t mostAtLevel = 32;

inline Rect rectOf(const AccessibleExtents& extents) {
  return {static_cast<double>(extents.x), static_cast<double>(extents.y),
          static_cast<double>(extents.width), static_cast<double>(extents.height)};
}

// Whether an element has the size of the frame that it is in: then the level below it may be the
// one that has the content.
inline bool isAsLarge(const AccessibleExtents& element, const AccessibleExtents& frame) {
  return element.width == frame.width && element.height == frame.height;
}

}  // namespace vellora
