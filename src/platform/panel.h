#pragma once

#include "base/rect.h"

namespace vellora {

class NativeView;

// The overlay's window: transparent, without shadow, click-through, never focused, above other
// windows and full-screen ones, on every desktop. Made hidden and without size. Main thread.
class Panel {
 public:
  virtual ~Panel() = default;

  // Applies the settings above and puts `content` into the panel; before the panel is first shown.
  // The view must outlive the panel. May be called again.
  virtual void configure(NativeView& content) = 0;

  // Moves and sizes the panel; window-system coordinates (points, origin at the bottom left of the
  // primary screen, y upward). Does not redraw at once.
  virtual void setFrame(const Rect& frame) = 0;

  // Shows the panel in front without activating the program or taking the keyboard.
  virtual void orderFrontRegardless() = 0;

  // Hides the panel; other programs see nothing of it from here on.
  virtual void orderOut() = 0;

  // As the window itself tells, not as it was asked for.
  virtual bool ignoresMouseEvents() const = 0;
  virtual bool isOpaque() const = 0;
};

}  // namespace vellora
