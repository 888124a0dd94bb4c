#pragma once

#include <cstdint>
#include <optional>

#include "platform/linux/wayland/session/output_layout.h"
#include "platform/linux/window_system/pixel_rect.h"

namespace vellora {

// How a panel's surface stands on an output. A surface's edges are whole points, and a frame's are
// whole pixels of the output: the surface is the frame and, where no point ends at the frame's
// edge, some more points around it, so that both the surface and the frame begin and end with a
// pixel. What is around the frame stays clear.
struct Standing {
  std::uint32_t output = 0;
  double scale = 1;  // pixels per point
  // The surface, in points from the output's top left.
  int left = 0;
  int top = 0;
  int width = 1;
  int height = 1;
  // The same in pixels: how many of them the surface has.
  int pixelWidth = 1;
  int pixelHeight = 1;
  // The frame's top left, in pixels of the surface; before it where the frame begins outside the
  // output.
  int frameX = 0;
  int frameY = 0;
  // The part of the frame that is on the output, in pixels of the surface.
  PixelRect visible;
  bool operator==(const Standing&) const = default;

  PixelRect surfacePixels() const;
};

// `frame` is in points of the layout, and its edges go to the nearest pixels. Nothing when no pixel
// of it is on the output.
std::optional<Standing> standingOn(const Output& output, const Rect& frame);

// The fewest points that are a whole number of pixels; 1 where it takes so many that it is not
// worth it: compositors then put the edges to the nearest pixels themselves.
int pointsToWholePixels(double scale);

}  // namespace vellora
