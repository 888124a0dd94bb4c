#include "platform/linux/player/player_actions.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "platform/linux/player/player_state.h"
#include "platform/linux/player/track_change.h"
#include "platform/linux/player/track_search.h"

namespace vellora {
namespace {

constexpr const char* root = "org.mpris.MediaPlayer2";
constexpr const char* player = "org.mpris.MediaPlayer2.Player";
constexpr const char* trackList = "org.mpris.MediaPlayer2.TrackList";

constexpr std::int64_t microsecondsPerMillisecond = 1000;
constexpr std::int64_t restartAfter = 2'000'000;  // microseconds into a track

// To the nearest, halves away from zero.
std::int64_t wholeMilliseconds(std::int64_t microseconds) {
  const auto whole = microseconds / microsecondsPerMillisecond;
  const auto rest = microseconds % microsecondsPerMillisecond;
  return whole + (rest >= 500 ? 1 : 0) - (rest <= -500 ? 1 : 0);
}

// MPRIS ignores a position before the beginning, a script moves to the beginning.
std::int64_t toMicroseconds(std::int64_t milliseconds) {
  constexpr auto most = std::numeric_limits<std::int64_t>::max() / microsecondsPerMillisecond;
  return std::clamp<std::int64_t>(milliseconds, 0, most) * microsecondsPerMillisecond;
}

void setPosition(PlayerRequest& request, const std::string& trackId, std::int64_t microseconds) {
  if (trackId.empty()) return request.fail("the player has no current track");
  request.call(player, "SetPosition",
               g_variant_new("(ox)", trackId.c_str(), static_cast<gint64>(microseconds)));
}

// Whether the desktop has a program for the location's scheme. Without one the desktop's opener
// would hand it to a browser, which asks a search engine.
bool isHandled(const std::string& location) {
  const GCharPtr scheme(g_uri_parse_scheme(location.c_str()));
  return scheme && GObjectPtr<GAppInfo>(g_app_info_get_default_for_uri_scheme(scheme.get()));
}

// Hands the location to the desktop without waiting for what comes of it. False where that cannot
// be begun; that nothing is there to open it is no failure.
bool openLocation(const std::string& location) {
  if (!isHandled(location)) return true;
  std::string program = "xdg-open";
  std::string argument = location;
  char* arguments[] = {program.data(), argument.data(), nullptr};
  return g_spawn_async(nullptr, arguments, nullptr,
                       GSpawnFlags(G_SPAWN_SEARCH_PATH | G_SPAWN_STDOUT_TO_DEV_NULL |
                                   G_SPAWN_STDERR_TO_DEV_NULL),
                       nullptr, nullptr, nullptr, nullptr) != FALSE;
}

std::string play(PlayerRequest& request, const PlayerCommand& command) {
  const auto found = findTrack(request, command.command.title, command.command.artist);
  if (request.failed()) return {};
  if (!found) {
    if (!openLocation(command.searchLocation)) request.fail("xdg-open cannot be started");
    return "searched";
  }
  TrackChange change(request);
  request.send(root, "Raise");
  request.call(trackList, "GoTo", g_variant_new("(o)", found->c_str()));
  request.call(player, "Play");
  if (command.milliseconds > 0) {
    change.await(*found);
    setPosition(request, *found, toMicroseconds(command.milliseconds));
  }
  return "playing";
}

std::string seek(PlayerRequest& request, std::int64_t milliseconds) {
  const auto state = readState(request);
  setPosition(request, state.track.id, toMicroseconds(milliseconds));
  request.call(player, "Play");
  return "seeked";
}

std::string playPause(PlayerRequest& request) {
  const auto state = readState(request);
  request.call(player, state.playing() ? "Pause" : "Play");
  return "toggled";
}

std::string previous(PlayerRequest& request) {
  const auto state = readState(request);
  if (state.position > restartAfter) {
    setPosition(request, state.track.id, 0);
  } else {
    request.call(player, "Previous");
  }
  request.call(player, "Play");
  return "previous";
}

std::string next(PlayerRequest& request) {
  request.call(player, "Next");
  request.call(player, "Play");
  return "next";
}

}  // namespace

std::string nowPlayingReply(PlayerRequest& request) {
  const auto state = readState(request);
  if (request.failed() || state.stopped()) return {};
  const auto& track = state.track;
  return track.title + "|" + track.artist + "|" + track.album + "|" +
         std::to_string(wholeMilliseconds(state.position)) + "|" +
         (state.playing() ? "playing" : "paused");
}

std::string carryOut(PlayerRequest& request, const PlayerCommand& command) {
  switch (command.command.action) {
    case MusicCommand::Action::play:
      return play(request, command);
    case MusicCommand::Action::seek:
      return seek(request, command.milliseconds);
    case MusicCommand::Action::playPause:
      return playPause(request);
    case MusicCommand::Action::previous:
      return previous(request);
    case MusicCommand::Action::next:
      return next(request);
  }
  request.fail("unknown command");
  return {};
}

}  // namespace vellora
