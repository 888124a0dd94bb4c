#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "platform/linux/players/player_description.h"
#include "platform/linux/players/player_windows.h"
#include "platform/native_view.h"
#include "platform/panel.h"
#include "platform/workspace.h"

namespace vellora {

// The display that the overlay is on, by one of the ways in which a desktop's programs reach it: it
// makes the seams that need one. It may be absent from the start or be lost; what it makes works
// then too, and shows nothing. What it made may outlive it, and keeps the connection open. A view
// goes only into a panel of the same window system. Main thread.
class WindowSystem {
 public:
  virtual ~WindowSystem() = default;

  // Whether there is a display, now.
  virtual bool present() const = 0;

  // `windows` is the directory of players' windows, which the workspace alone writes; null: nobody
  // reads it. Never null.
  virtual std::unique_ptr<Workspace> makeWorkspace(std::vector<PlayerDescriptionPtr> descriptions,
                                                   std::shared_ptr<PlayerWindows> windows) = 0;
  // Neither is ever null.
  virtual std::unique_ptr<NativeView> makeView() = 0;
  virtual std::unique_ptr<Panel> makePanel() = 0;

  // Called once, from the main loop, when a display that was there has gone for good. Replaces what
  // was given before; never called for a display that is absent already.
  virtual void whenLost(std::function<void()> lost) = 0;
};

}  // namespace vellora
