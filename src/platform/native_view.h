#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "base/rect.h"
#include "platform/caption_painter.h"

namespace vellora {

// The system's view that the captions are drawn in. Points, origin at the top left, y downward.
// Main thread.
class NativeView {
 public:
  virtual ~NativeView() = default;

  // What paints the view; called whenever the view must be drawn, with its own surface or with that
  // of a bitmap.
  virtual void setDrawFunction(std::function<void(Surface&)> draw) = 0;

  // The view's place within its panel.
  virtual void setFrame(const Rect& frame) = 0;
  virtual Rect bounds() const = 0;

  // Asks for the view to be drawn at the next opportunity; many requests make one drawing.
  virtual void setNeedsDisplay() = 0;

  // Pixels per point of the window that the view is in; nothing when it is in none.
  virtual std::optional<double> windowScale() const = 0;

  // A clear bitmap for the view's whole bounds at its scale; null when there is none to be had.
  virtual std::unique_ptr<Bitmap> bitmapForCachingDisplay() = 0;
  // Draws the whole view into such a bitmap, whether or not it is on a screen.
  virtual void cacheDisplay(Bitmap& bitmap) = 0;
};

}  // namespace vellora
