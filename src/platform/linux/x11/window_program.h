#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/linux/players/player_descriptions.h"
#include "platform/linux/x11/window_process.h"
#include "platform/linux/x11/x_property.h"
#include "platform/linux/x11/x_session.h"

namespace vellora {

// The program that a window belongs to, as the window tells.
struct WindowProgram {
  std::int32_t process = 0;
  WindowNames names;
  std::optional<std::string> identifier;  // as bundleIdentifierOf finds it
};

// What a window says of its program, asked but not yet taken: its process is _NET_WM_PID, as
// processHere has it, unless WM_CLIENT_MACHINE names another host. Main thread.
class WindowProgramQuestion {
 public:
  WindowProgramQuestion(const XSession& session, xcb_window_t window);

  // Whether `take` will not have to wait. The questions that were asked before it are answered too
  // then, for the server answers in order.
  bool hasArrived() { return wmClass_.hasArrived(); }

  // Nothing when the window is gone or names no process of this host. Once.
  std::optional<WindowProgram> take();
  // Whether any of the properties could not be read, once they are taken.
  bool failed() const;

 private:
  PropertyQuestion process_;
  WindowProcessQuestion client_;
  PropertyQuestion machine_;
  PropertyQuestion gtkApplicationId_;
  PropertyQuestion wmClass_;  // the last that is asked
};

// The part of WM_CLASS, or the application identifier beside it, that has the form of an
// application identifier ("com.apple.Music"): the first of the application identifier, the class
// part and the instance part. `wmClass` is the property's value: instance and class, each ended by
// a zero byte.
std::optional<std::string> bundleIdentifierOf(std::string_view gtkApplicationId,
                                              std::string_view wmClass);

}  // namespace vellora
