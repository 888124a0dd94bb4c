#pragma once

#include <memory>
#include <optional>
#include <string>

#include "exchange/records/records.h"

namespace vellora {

// What a player says that it plays.
struct HeardTrack {
  std::string player;     // its name, for people; control characters are possible
  NowPlayingTrack track;  // as of `updatedAt`; texts of any length
};

// Listens to the players of the user's session, whichever they are. Main thread.
class PlayerWatch {
 public:
  virtual ~PlayerWatch() = default;

  // What plays, as far as it is known at `now`, wall-clock seconds since 1970. Begins questions to
  // the players and takes what they have answered; never waits. To be called again after
  // `pause`; between calls nothing happens. Of several players it is the one that was told of last
  // as long as it plays, then another that plays, then that one while it is paused. A player that
  // does not answer for some seconds counts as gone until it answers.
  virtual std::optional<HeardTrack> look(double now) = 0;
  // Seconds after a look at `now` until the next one can find or do anything.
  virtual double pause(double now) const = 0;
};

// Null on a system where programs are not told what others play.
std::unique_ptr<PlayerWatch> makePlayerWatch();

}  // namespace vellora
