#pragma once

#include <memory>
#include <vector>

#include "platform/linux/drawing/cairo_surface.h"
#include "platform/linux/window_system/pixel_rect.h"

namespace vellora {

// A caption's picture as a panel shows it. Holding the pixels keeps their address from being given
// to another picture, so that two pictures are the same exactly when their addresses are.
struct ShownPicture {
  CairoSurfacePtr pixels;  // an image surface
  Size size;               // points
  Rect plate;              // points, from the picture's top left
  CairoSurfacePtr copy;    // the same at the window system's server, once it was needed
};

// A picture and where it goes, in points of the panel, y downward.
struct Placement {
  std::shared_ptr<ShownPicture> picture;
  Rect destination;

  bool operator==(const Placement& other) const {
    return picture->pixels == other.picture->pixels && destination == other.destination;
  }
};

// Takes down what a view draws instead of drawing it. Main thread.
class PlacementRecorder final : public Surface {
 public:
  // The view's origin lies at `origin` of the panel. Pictures that are in `before` too are taken
  // over from there; it must outlive the recorder.
  PlacementRecorder(Point origin, const std::vector<Placement>& before)
      : origin_(origin), before_(before) {}

  // `image` must be a CairoImage. A destination without area, or that is no number, is left out.
  void drawImage(const CaptionImage& image, const Rect& destination) override;

  std::vector<Placement> placements;

 private:
  Point origin_;
  const std::vector<Placement>& before_;
};

// Where a placement goes, in pixels.
Rect pixelsOf(const Rect& points, double scale);

// The pixels of a window of the size of `frame` in which one list of placements may look other than
// the other; none when the lists are equal.
std::vector<PixelRect> differenceBetween(const std::vector<Placement>& before,
                                         const std::vector<Placement>& after, double scale,
                                         const PixelRect& frame);

}  // namespace vellora
