#pragma once

#include <cstddef>
#include <functional>
#include <vector>

#include "library/song.h"

namespace vellora::demo {

// The player without its window: which song of the library it is at, and where, by its clock. The
// operations mean what the player interface of the MPRIS D-Bus Interface Specification 2.2 says of
// those of the same names. The library repeats: after the last song comes the first. Positions are
// seconds. One thread.
class Playback {
 public:
  enum class Status { stopped, paused, playing };

  // What an operation changed. `position` only where the position moved otherwise than by playing
  // on or by beginning a track at 0.
  struct Change {
    bool track = false;
    bool status = false;
    bool position = false;
    bool rate = false;
    bool volume = false;
  };
  using Listener = std::function<void(const Change&)>;

  static constexpr double minimumRate = 0.25;
  static constexpr double maximumRate = 8.0;

  // `songs` must not be empty. `clock` gives seconds that never run backwards. Starts paused at the
  // begin of the first song.
  Playback(std::vector<Song> songs, std::function<double()> clock);

  // Listeners are called after each operation that changed something, in the order of listening.
  void listen(Listener listener);

  const std::vector<Song>& songs() const { return songs_; }
  std::size_t index() const { return index_; }
  const Song& song() const { return songs_[index_]; }
  Status status() const { return status_; }
  double rate() const { return rate_; }
  double volume() const { return volume_; }
  // Never beyond the song's end.
  double position() const;

  void play();
  void pause();
  void playPause();
  void stop();  // back to the song's beginning
  // Neighbouring songs; the status stays.
  void next();
  void previous();
  // Begins the song at `index` and plays it; an index that is none changes nothing.
  void goTo(std::size_t index);
  // Moves by `offset` seconds: not before the begin; beyond the end goes to the next song.
  void seek(double offset);
  // Moves to `position`; one outside the song changes nothing.
  void setPosition(double position);
  // 0 pauses, any other rate outside the limits changes nothing.
  void setRate(double rate);
  // Below 0 counts as 0. Nothing is heard either way.
  void setVolume(double volume);

  // To be called now and then: goes on to the next song when one has ended.
  void advance();

 private:
  void moveTo(double position);
  void begin(std::size_t index, Status status);
  void setStatus(Status status);
  void tell(const Change& change) const;

  std::vector<Song> songs_;
  std::function<double()> clock_;
  std::vector<Listener> listeners_;
  std::size_t index_ = 0;
  Status status_ = Status::paused;
  double rate_ = 1;
  double volume_ = 1;
  double anchorPosition_ = 0;  // where the song was
  double anchorTime_ = 0;      // at this time of the clock
};

}  // namespace vellora::demo
