#pragma once

#include <string>

#include "platform/linux/player/player_request.h"

namespace vellora {

// Waits until the player's current track is the one with this id, since a position is only taken
// for that one; fails the request when its deadline comes first.
class TrackChange {
 public:
  // From here on changes are noticed; make it before what changes the track.
  explicit TrackChange(PlayerRequest& request);
  ~TrackChange();
  TrackChange(const TrackChange&) = delete;
  TrackChange& operator=(const TrackChange&) = delete;

  void await(const std::string& trackId);

 private:
  PlayerRequest& request_;
  class Signals;
  std::unique_ptr<Signals> signals_;
};

}  // namespace vellora
