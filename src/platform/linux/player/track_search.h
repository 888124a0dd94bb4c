#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/linux/player/player_request.h"

namespace vellora {

// Whether two texts are equal as AppleScript compares them unless told otherwise: letter case does
// not count; diacritical marks, punctuation and blanks do. Canonically equivalent texts are equal.
bool scriptTextsEqual(std::string_view a, std::string_view b);

// The id of a track in the player's track list (org.mpris.MediaPlayer2.TrackList), which stands for
// its library: the first with this title and artist, else the first with this title. Nothing when
// there is none, the player keeps no track list, or the request fails.
std::optional<std::string> findTrack(PlayerRequest& request, std::string_view title,
                                     std::string_view artist);

}  // namespace vellora
