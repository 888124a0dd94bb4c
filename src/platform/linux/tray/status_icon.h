#pragma once

#include <cstdint>
#include <span>

#include "platform/linux/glib/glib_ptr.h"

namespace vellora {

// The glyph 文 as a square picture: `side` × `side` bytes, top row first, 0 where the glyph leaves
// the pixel alone and 255 where it covers it.
struct StatusIcon {
  int side = 0;
  std::span<const std::uint8_t> coverage;
};

// The sizes that tray hosts show, smallest first.
std::span<const StatusIcon> statusIcons();

// The glyph in white on a dark plate, legible on light and dark panels, as the StatusNotifierItem
// interface takes pictures: a(iiay), width, height and ARGB32 in network byte order.
GVariantPtr statusIconPixmaps();

}  // namespace vellora
