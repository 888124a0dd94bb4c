#pragma once

#include <vector>

#include "platform/linux/drawing/handles.h"
#include "platform/linux/wayland/panel/standing.h"
#include "platform/linux/window_system/placement.h"

namespace vellora {

// What a surface shows: pictures and their places in the panel, and where the panel lies in the
// surface.
struct PanelContent {
  std::vector<Placement> placements;
  double scale = 1;  // pixels per point
  int frameX = 0;    // the panel's top left, in pixels of the surface
  int frameY = 0;
  PixelRect visible;  // the part of the surface that the panel takes, in its pixels

  PanelContent() = default;
  PanelContent(std::vector<Placement> list, const Standing& standing);
  bool operator==(const PanelContent&) const = default;
};

// The pixels of a surface in which the two may look different, each within the panel's part of one
// of them; none when they are equal. Two surfaces of one size are meant.
std::vector<PixelRect> changesBetween(const PanelContent& before, const PanelContent& after);

// Paints those pixels of a surface anew, which may hold anything; leaves the others. Main thread.
void paintContent(cairo_surface_t* surface, const PanelContent& content,
                  const std::vector<PixelRect>& pixels);

}  // namespace vellora
