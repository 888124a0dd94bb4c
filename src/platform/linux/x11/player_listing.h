#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/linux/players/player_windows.h"
#include "platform/linux/x11/window_program.h"

namespace vellora {

// Keeps the directory of the players' windows to those that the window manager lists
// (_NET_CLIENT_LIST): players that have never been in front since are noted, without the place of
// their windows, and those without windows are dropped. Never waits for the server. Main thread.
class PlayerListing {
 public:
  PlayerListing(XSession& session, const std::vector<PlayerDescriptionPtr>& descriptions,
                PlayerWindows& windows)
      : session_(session), descriptions_(descriptions), windows_(windows) {}

  // Takes note of an event.
  void handleEvent(const xcb_generic_event_t& event);
  // The connection went, and the windows with it.
  void forget();

  // Takes what has been answered and asks what is to be asked now. `front` is the process of the
  // player in front, which is kept whether it is listed or not.
  void advance(std::optional<std::int32_t> front);

 private:
  void takeWindows(std::optional<std::int32_t> front);

  XSession& session_;
  const std::vector<PlayerDescriptionPtr>& descriptions_;
  PlayerWindows& windows_;
  bool isStale_ = true;
  std::optional<PropertyQuestion> list_;
  std::vector<WindowProgramQuestion> programs_;
};

}  // namespace vellora
