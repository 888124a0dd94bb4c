#pragma once

#include <optional>
#include <string>

#include "companion/song/lyric_file.h"

namespace vellora::companion {

// A song as the player names it, whose lyrics are wanted.
struct WantedSong {
  std::string title;
  std::string artist;              // may be empty
  std::string album;               // may be empty
  std::optional<double> duration;  // seconds, where it is known

  bool operator==(const WantedSong&) const = default;
};

// Lyrics that come from elsewhere than the user's own folder.
struct FoundLyrics {
  LyricFile lyrics;
  std::string from;  // where they come from, for people: "lrclib.net"
};

// Where lyrics come from that the user's own folder lacks. Nothing here waits. One thread.
class LyricsSource {
 public:
  virtual ~LyricsSource() = default;
  LyricsSource() = default;
  LyricsSource(const LyricsSource&) = delete;
  LyricsSource& operator=(const LyricsSource&) = delete;

  // What is wanted from now on, or nothing. Another song ends what was begun for the one before;
  // the same one changes nothing.
  virtual void want(const std::optional<WantedSong>& song) = 0;

  // To be called several times a second while `underWay`, and now and then else; `now` in seconds
  // since 1970. The lyrics of the song that is wanted, once, when they have come.
  virtual std::optional<FoundLyrics> step(double now) = 0;

  // Whether there is something to step for several times a second.
  virtual bool underWay(double now) const = 0;

  // What is done, or what has come of it, for people; empty where there is nothing to tell. Before
  // the first song, what is sent to whom.
  virtual std::string report() const = 0;
};

}  // namespace vellora::companion
