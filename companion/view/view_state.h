#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "companion/exchange/keeper.h"
#include "exchange/records/records.h"

namespace vellora::companion {

// What there is to be seen at a moment.
struct ViewState {
  std::optional<NowPlayingTrack> track;  // nothing while none is published that is usable
  double position = 0;                   // of the track, in seconds, as of this moment
  const PlayingSong* song = nullptr;     // null where there are no lyrics of it
  std::optional<std::size_t> line;       // the sung line of `song`
  int shift = 0;                         // milliseconds that `song` comes later than its times say
  std::string overlay;                   // the overlay's status line; empty where there is none
  std::string player;         // that tells itself what plays; empty where the overlay does
  bool hearsPlayers = false;  // whether players are listened to where no overlay tells
  CaptionSettings settings;
  std::filesystem::path snapshot;
  std::size_t songsInLibrary = 0;
  std::string elsewhere;  // what comes of asking for lyrics elsewhere; may be empty
  bool reading = false;   // for the first time, and there may be more songs
  std::string notice;     // what became of the last key; may be empty
};

// What a user asks for.
enum class Wish {
  quit,
  playPause,
  next,
  previous,
  back,
  forward,
  captionsUp,
  captionsDown,
  larger,
  smaller,
  toggle,
  lyricsEarlier,
  lyricsLater,
  nextLyrics,
  previousLyrics,
  nextTranslation,
  previousTranslation
};

// How the companion shows itself. Main thread.
class View {
 public:
  virtual ~View() = default;

  virtual void show(const ViewState& state) = 0;
  // Seconds for which what was shown of this state holds while nothing happens but that the song
  // goes on.
  virtual double lasts(const ViewState& state) const = 0;
  // Can be read from when the user asks for something; -1 where nobody can.
  virtual int input() const = 0;
  // What the user has asked for since the last call. Never waits.
  virtual std::vector<Wish> take() = 0;
};

// Nobody sees what changes sooner, in seconds.
inline constexpr double shortestWait = 0.01;
// Seconds until another line is sung, `shortestWait` at least; infinite where none will be.
double untilNextLine(const ViewState& state);

}  // namespace vellora::companion
