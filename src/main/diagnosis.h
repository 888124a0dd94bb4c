#pragma once

#include <iosfwd>
#include <string>

#include "base/rect.h"
#include "platform/platform.h"

namespace vellora {

// A rectangle as "(x, y, width, height)", each number the shortest that reads back, with at least
// one digit after the point: (12.5, 40.0, 300.0, 22.0). The null rectangle is (inf, inf, 0.0, 0.0).
std::string rectText(const Rect& rect);

// Prints whether the program may read other programs' windows and, when it can be read, the
// player's window and the lyric rows in its viewport, one line each, in accessibility coordinates.
// When the reading may have been cut short, a line in `notes` says by which limits. Asks for no
// permission and needs no display. Main thread.
void diagnose(Platform& platform, std::ostream& output, std::ostream& notes);

}  // namespace vellora
