#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace vellora {

struct FakePlayerTrack {
  std::string id;
  std::string title;
  std::vector<std::string> artists;
  std::string album;
};

// What a fake player is like.
struct FakePlayerSetup {
  std::string busName = "org.mpris.MediaPlayer2.stand_in";
  std::optional<std::string> desktopEntry = "com.apple.Music";
  std::string status = "Playing";
  std::int64_t position = 0;            // microseconds
  std::vector<FakePlayerTrack> tracks;  // the track list, in order
  std::size_t current = 0;         // index of the current track; none when there is no such track
  bool trackList = true;           // whether the TrackList interface is there
  std::uint32_t changesAfter = 0;  // milliseconds from GoTo's answer until the track changes
  bool changes = true;             // whether GoTo changes the track at all
  std::uint32_t seeksAfter = 0;    // milliseconds until SetPosition is answered
  std::set<std::string> mute;      // methods that are never answered
  std::set<std::string> refused;   // methods that are answered with an error
  std::set<std::string> deadly;    // methods whose call ends the player's process
};

// As an argument of the player's program (GVariant text format), and back.
std::string argumentText(const FakePlayerSetup& setup);
FakePlayerSetup fakePlayerSetup(const std::string& argument);

}  // namespace vellora
