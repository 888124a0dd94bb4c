#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/accessibility/bus_connection.h"

namespace vellora {

// Between the title and the artist of what plays.
inline constexpr const char* titleSeparator = " \u2014 ";

// What a media player plays, as its metadata say. Empty where they do not.
struct MediaTrack {
  bool isPlaying = false;
  std::string title;
  std::string artist;  // several with ", " between
};

// "TITLE — ARTIST"; the title alone where there is no artist.
std::string trackTitle(const MediaTrack& track);

// The media players of the session and what they play (MPRIS2: names org.mpris.MediaPlayer2.* and
// their metadata), by the processes that own them, on a connection to the session bus of its own.
// The names are asked for once and then followed by the bus's signals. It needs no event loop: each
// call takes in what has arrived. One thread at a time.
class MediaPlayers {
 public:
  // That of the process, or of one that belongs with it (process_family.h); of several the one that
  // plays. Nothing when there is none. Waits for first answers only, until the deadline.
  std::optional<MediaTrack> playerOf(std::int32_t process, Steady::time_point deadline);

 private:
  struct Service {
    std::string owner;  // unique name
    std::optional<std::int32_t> process;
    bool isAsked = false;                  // for its process, and has not answered
    std::map<std::int32_t, bool> belongs;  // to these other processes
    bool isFollowed = false;               // its metadata were asked for
    MediaTrack track;
  };

  static bool belongsTo(std::int32_t process, Service& service);
  bool connect();
  void askNames();
  void askOwner(const std::string& name);
  void noteOwner(const std::string& name, const std::string& owner);
  void askProcess(const std::string& name);
  void follow(const std::string& name);
  void noteChanges(sd_bus_message* signal);

  std::map<std::string, Service> services_;  // by well-known name
  bool isListed_ = false;
  std::unique_ptr<BusConnection> session_;  // last: its calls name the members above
};

}  // namespace vellora
