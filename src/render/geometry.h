#pragma once

#include <optional>

#include "base/rect.h"

namespace vellora {

// Where captions go. All lengths are points; "accessibility coordinates" have their origin at the
// top left of the primary screen and y downward. Pure arithmetic: any thread, no failure.
namespace OverlayGeometry {

// `rect`, given in accessibility coordinates, in those of the window system: origin at the bottom
// left of the primary screen, y upward. `primaryHeight` is the primary screen's height, whichever
// screen the rectangle is on.
Rect appKitRect(const Rect& rect, double primaryHeight);

// The place of a caption `height` tall under `row`: from 2 points right of the row's left edge (or
// the viewport's, where that is further right) to 22 points before the viewport's right edge, 2
// points below the row and moved down by `offset`, with 3 points free above the next row or the
// viewport's bottom. `nextRow` is absent for the last row. Accessibility coordinates throughout.
// Nothing where there is no room: the row's middle is outside the viewport, the row is not wider
// than 40 points, the caption would be narrower than 80, or would not fit.
std::optional<Rect> labelRect(const Rect& row, const std::optional<Rect>& nextRow,
                              const Rect& viewport, double height, double offset);

}  // namespace OverlayGeometry

// How strongly captions stand out.
namespace OverlayFocus {

// How soft the caption of `row` is, 0 sharp to 1 softest in eighths, by the distance of the row's
// top from the reading line at 35 % of the viewport's height: sharp within 5.5 % of that height,
// softest from 19.5 %, linear between. 0 where the row is outside the viewport.
double softness(const Rect& row, const Rect& viewport);

}  // namespace OverlayFocus

}  // namespace vellora
