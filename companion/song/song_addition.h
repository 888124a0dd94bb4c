#pragma once

#include <string>

#include "companion/song/song.h"

namespace vellora::companion {

// What is added to the lines of a song that plays, as it comes. Main thread.
class SongAddition {
 public:
  virtual ~SongAddition() = default;

  // `song` plays from now on; what was begun for another is dropped. May fill lines at once, and
  // waits no longer than a person notices.
  virtual void begin(Song& song) = 0;
  // Nothing plays that is known.
  virtual void drop() = 0;
  // Puts what has come into the lines of the song that was begun last. Whether it changed any.
  // Never waits.
  virtual bool step(double now, Song& song) = 0;
  // Whether something may come any moment, so that `step` is to be called several times a second.
  virtual bool underWay() const = 0;
  // What is to be told to the user now, or nothing.
  virtual std::string notice() const = 0;
};

}  // namespace vellora::companion
