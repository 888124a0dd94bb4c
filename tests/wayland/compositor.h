#pragma once

#include <memory>
#include <optional>
#include <string>

#include <sys/types.h>

#include "base/rect.h"
#include "e2e/process.h"
#include "witness/screen.h"

namespace vellora::e2e {

// The session's Wayland compositor as a test steers it and looks at it, by the compositor's own
// means and without the overlay's code. Lengths are points of the layout of all outputs, from its
// top left; pictures have one pixel a point, whatever the outputs' scales. One thread.
class Compositor : public witness::Screen {
 public:
  // sway where SWAYSOCK is set, KWin where the session bus has it; null where neither is.
  static std::unique_ptr<Compositor> open();

  virtual std::string name() const = 0;

  // Where the content of the program's window is, from which accessible positions of a program
  // count that does not know where its window is. Nothing without a window of that process.
  virtual std::optional<Rect> contentOf(pid_t process) const = 0;
  // Takes the program's window out of any tiling and puts it there, without decorations.
  virtual void place(pid_t process, const Rect& frame) = 0;
  virtual void activate(pid_t process) = 0;
  // Whether the program's window has the keyboard.
  virtual bool isActive(pid_t process) const = 0;
  // Outputs are counted from 0.
  virtual void setScale(int output, double scale) = 0;
  // Whether the compositor can. sway 1.7 cannot without a screen: it says that it did, and did not.
  virtual bool setPlugged(int output, bool plugged) = 0;

  // Clicks there again and again, until the process goes: a program hears of a pointer's clicks
  // only some time after the pointer has been plugged in.
  Process keepClicking(Point place) const;

  // Keeps this moment's picture as the one that `windowAlone` gives: the caller knows that nothing
  // stands above the window.
  void rememberAlone();
  void forgetAlone() { alone_.reset(); }
  std::optional<witness::WindowPicture> windowAlone(const std::string&) const override {
    return alone_;
  }

 private:
  std::optional<witness::WindowPicture> alone_;
};

std::unique_ptr<Compositor> openSway();
std::unique_ptr<Compositor> openKWin();

}  // namespace vellora::e2e
