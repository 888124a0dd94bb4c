#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/rect.h"
#include "platform/linux/players/player_descriptions.h"

namespace vellora {

// A window as the compositor tells of it. Places are in points of the compositor's layout: origin
// at its top left, y downward, over all outputs.
struct LocatedWindow {
  std::int32_t process = 0;
  WindowNames names;  // a native window's application id, an X11 window's WM_CLASS
  // The window without what the compositor puts around it, and without the shadow that the program
  // draws around it.
  Rect content;
  // The whole surface, with such a shadow: the positions that a native window tells of its elements
  // count from its top left. Nothing where the compositor does not tell.
  std::optional<Rect> surface;
  // An X11 window (under Xwayland): the positions that it tells are the screen's already.
  bool tellsScreenPositions = false;
  bool isVisible = true;              // not minimised, and on a workspace that is shown
  bool areNamesInLowerCase = false;   // whatever the window itself wrote
  std::optional<std::string> output;  // its name, of the output that the compositor has it on
  bool isActive = false;              // it has the keyboard
  bool operator==(const LocatedWindow&) const = default;
};

// Tells where windows are on a Wayland desktop, which programs cannot know themselves: a compositor
// tells it over a channel of its own. Nothing here waits: what is told is what is known at that
// moment. A compositor whose channel is gone, or that does not answer, has nothing in front
// until it is back. Main thread, whose GLib loop has to run.
class WindowLocator {
 public:
  virtual ~WindowLocator() = default;

  // What the compositor is spoken to by, for people, such as "sway's IPC".
  virtual std::string name() const = 0;
  // Whether the compositor has told, and is there.
  virtual bool isKnown() const = 0;
  // The window that has the keyboard; nothing where none has, or it cannot be seen.
  virtual std::optional<LocatedWindow> frontWindow() const = 0;
  // All windows that can be told of, the active one first, then those that lie higher or were
  // active later, as far as the compositor tells.
  virtual std::vector<LocatedWindow> windows() const = 0;
  // Calls `listener` from the loop whenever one of the above has become another. One listener; none
  // takes it away.
  virtual void whenChanged(std::function<void()> listener) = 0;
  // Whether somebody depends on the places of windows just now (a player is in front). Compositors
  // that do not tell of every move are asked more often meanwhile.
  virtual void setWatched(bool isWatched) = 0;
};

// The locator for the compositor of this session, by what the environment and the session bus say;
// null where none fits. Looks at the environment and asks the bus who is there, for 500 ms at most;
// the compositor's answers come later.
std::unique_ptr<WindowLocator> makeWindowLocator();

}  // namespace vellora
