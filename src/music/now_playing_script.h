#pragma once

#include <string_view>

namespace vellora {

// The question what the player plays, in AppleScript. The answer is empty when it is not running or
// stopped, else five fields separated by "|": track, artist, album, position in whole milliseconds
// and the player's state. Fixed to the character: the player's backends answer to this text.
inline constexpr std::string_view nowPlayingScript =
    R"(if application "Music" is not running then return ""
tell application "Music"
        if player state is stopped then return ""
        -- Milliseconds as an integer: coercing the position to text uses the
        -- decimal separator of the user's locale, which is a comma here.
        return name of current track & "|" & artist of current track & "|" & album of current track ¬
                & "|" & (((player position) * 1000) as integer as text) & "|" & (player state as text)
end tell)";

}  // namespace vellora
