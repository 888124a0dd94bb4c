#pragma once

#include <cstdint>
#include <string>

#include "platform/linux/player/player_request.h"

namespace vellora {

// A track as MPRIS metadata tells it (a{sv}; keys of the MPRIS v2 metadata guidelines). What is
// missing or of another type is empty.
struct PlayerTrack {
  std::string id;      // mpris:trackid, a D-Bus object path
  std::string title;   // xesam:title
  std::string artist;  // xesam:artist, several joined by ", "
  std::string album;   // xesam:album
};
PlayerTrack readTrack(GVariant* metadata);

// The properties of org.mpris.MediaPlayer2.Player that requests need.
struct PlayerState {
  std::string playbackStatus;  // "Playing", "Paused" or "Stopped"
  std::int64_t position = 0;   // microseconds
  PlayerTrack track;

  bool stopped() const { return playbackStatus == "Stopped"; }
  bool playing() const { return playbackStatus == "Playing"; }
};
// Of the interface's properties (a{sv}); what is missing or of another type is empty.
PlayerState readState(GVariant* properties);
// The same of a player's. One call; a state of empty fields when the request fails.
PlayerState readState(PlayerRequest& request);

}  // namespace vellora
