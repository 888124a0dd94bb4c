#pragma once

#include <string>

#include "platform/linux/player/player_request.h"
#include "platform/music_scripting.h"

namespace vellora {

// What is playing, as the question's script words it: title, artist, album, whole milliseconds and
// "playing" or "paused", separated by "|"; the empty text when the player is stopped.
std::string nowPlayingReply(PlayerRequest& request);

// Carries out a command and gives its script's reply, which counts unless the request failed.
std::string carryOut(PlayerRequest& request, const PlayerCommand& command);

}  // namespace vellora
