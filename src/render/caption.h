#pragma once

#include <string>

#include "base/rect.h"

namespace vellora {

// One caption to draw.
struct Caption {
  std::string text;
  Rect rect;            // the plate, in the caption view's coordinates (points, y downward)
  double font = 0;      // point size of the medium-weight system font
  double softness = 0;  // 0 sharp to 1 softest, in eighths
};

}  // namespace vellora
