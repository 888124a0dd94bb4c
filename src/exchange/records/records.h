#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "exchange/records/overlay_lines.h"

// The records that Vellora and Tessaly exchange as small JSON files, with their freshness rules.
// All times are wall-clock seconds since 1970, positions are seconds. Plain values; texts compare
// by canonical equivalence, numbers numerically. Every predicate is false for a time that is not a
// number.
namespace vellora {

inline constexpr std::string_view nowPlayingFileName = "nowplaying.json";
inline constexpr std::string_view syncRequestFileName = "sync.json";
inline constexpr std::string_view commandFileName = "command.json";
inline constexpr std::string_view statusFileName = "status.json";

// Ages in seconds from which a record no longer counts. The snapshot's own limit stands in
// OverlaySnapshot::isUsable.
inline constexpr double nowPlayingMaxAge = 8.0;
inline constexpr double syncRequestMaxAge = 25.0;
inline constexpr double commandMaxAge = 20.0;

// The translation snapshot, written by Tessaly.
struct OverlaySnapshot {
  std::int64_t version = 1;  // only 1 is usable
  double updatedAt = 0;
  bool enabled = false;
  std::string musicTitle;
  std::string musicArtist;
  double fontSize = 0;        // points
  double verticalOffset = 0;  // points, positive moves every caption down
  OverlayLines lines;

  // Version 1, enabled, less than 6 seconds old and at most 1 second in the future.
  bool isUsable(double now) const;
};

// What the player is playing, written by Vellora.
struct NowPlayingTrack {
  NowPlayingTrack() = default;
  NowPlayingTrack(double updatedAt_, std::string title_, std::string artist_, std::string album_,
                  double position_ = 0, bool playing_ = false)
      : updatedAt(updatedAt_),
        title(std::move(title_)),
        artist(std::move(artist_)),
        album(std::move(album_)),
        position(position_),
        playing(playing_) {}

  std::int64_t version = 1;
  double updatedAt = 0;
  std::string title;
  std::string artist;
  std::string album;
  double position = 0;   // seconds; may be absent in a file
  bool playing = false;  // may be absent in a file

  // Version 1, a title, less than 8 seconds old and at most 1 second in the future.
  bool isUsable(double now) const;
  // Where the player is at `now`, extrapolated while it plays; nothing when not usable.
  std::optional<double> playbackTime(double now) const;

  friend bool operator==(const NowPlayingTrack& a, const NowPlayingTrack& b);
};

// Tessaly's request to be told what is playing.
struct SyncRequest {
  double updatedAt = 0;

  // Less than 25 seconds old and at most 1 second in the future.
  bool isActive(double now) const;
};

// A player command from Tessaly.
struct MusicCommand {
  enum class Action { play, seek, playPause, previous, next };

  // The action's name in a file, and back; nothing for a name that is none, letter case included.
  static std::string_view name(Action action);
  static std::optional<Action> actionNamed(std::string_view name);

  MusicCommand() = default;
  MusicCommand(double requestedAt_, Action action_, std::string title_, std::string artist_ = "",
               double position_ = 0)
      : requestedAt(requestedAt_),
        action(action_),
        title(std::move(title_)),
        artist(std::move(artist_)),
        position(position_) {}

  double requestedAt = 0;
  Action action = Action::play;
  std::string title;
  std::string artist;
  double position = 0;  // seconds

  // Less than 20 seconds old and at most 1 second in the future.
  bool isFresh(double now) const;

  friend bool operator==(const MusicCommand& a, const MusicCommand& b);
};

// Vellora's one-line status.
struct OverlayStatus {
  OverlayStatus() = default;
  explicit OverlayStatus(std::string message_, bool stopped_ = false)
      : message(std::move(message_)), stopped(stopped_) {}

  std::string message;
  bool stopped = false;
};

}  // namespace vellora
