#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

// The scripts as they were agreed, line by line, each with its number of leading spaces. Bracketed
// words are filled in: the quoted title and artist, whole milliseconds, and the search location.
namespace vellora::script_lines {

using Lines = std::vector<std::pair<int, std::string>>;

// Joined by line feeds, without one at the end.
inline std::string joined(const Lines& lines) {
  std::string text;
  for (const auto& [spaces, line] : lines) {
    if (!text.empty()) text += '\n';
    text.append(static_cast<std::size_t>(spaces), ' ') += line;
  }
  return text;
}

inline const Lines nowPlaying = {
    {0, R"-(if application "Music" is not running then return "")-"},
    {0, R"-(tell application "Music")-"},
    {8, R"-(if player state is stopped then return "")-"},
    {8, R"-(-- Milliseconds as an integer: coercing the position to text uses the)-"},
    {8, R"-(-- decimal separator of the user's locale, which is a comma here.)-"},
    {8,
     R"-(return name of current track & "|" & artist of current track & "|" & album of current track ¬)-"},
    {16,
     R"-(& "|" & (((player position) * 1000) as integer as text) & "|" & (player state as text))-"},
    {0, R"-(end tell)-"},
};

inline const Lines findTrack = {
    {0, R"-(on findTrack())-"},
    {4, R"-(tell application "Music")-"},
    {8, R"-(set hits to (every track whose name is [TITLE] and artist is [ARTIST]))-"},
    {8, R"-(if hits is {} then set hits to (every track whose name is [TITLE]))-"},
    {8, R"-(if hits is not {} then return item 1 of hits)-"},
    {8, R"-(repeat with pl in user playlists)-"},
    {12, R"-(try)-"},
    {16, R"-(set hits to (every track of pl whose name is [TITLE] and artist is [ARTIST]))-"},
    {16, R"-(if hits is {} then set hits to (every track of pl whose name is [TITLE]))-"},
    {16, R"-(if hits is {} then set hits to (every track of pl whose name contains [TITLE]))-"},
    {16, R"-(if hits is not {} then return item 1 of hits)-"},
    {12, R"-(end try)-"},
    {8, R"-(end repeat)-"},
    {4, R"-(end tell)-"},
    {4, R"-(return missing value)-"},
    {0, R"-(end findTrack)-"},
};

inline const Lines play = {
    {0, R"-(set found to findTrack())-"},
    {0, R"-(if found is missing value then)-"},
    {4, R"-(open location "[LOCATION]")-"},
    {4, R"-(return "searched")-"},
    {0, R"-(end if)-"},
    {0, R"-(tell application "Music")-"},
    {4, R"-(activate)-"},
    {4, R"-(play found)-"},
    {4, R"-(if [MS] > 0 then set player position to ([MS] / 1000))-"},
    {0, R"-(end tell)-"},
    {0, R"-(return "playing")-"},
};

inline const Lines seek = {
    {0, R"-(tell application "Music")-"},
    {4, R"-(set player position to ([MS] / 1000))-"},
    {4, R"-(play)-"},
    {0, R"-(end tell)-"},
    {0, R"-(return "seeked")-"},
};

inline const Lines playPause = {
    {0, R"-(tell application "Music")-"},
    {4, R"-(if player state is playing then)-"},
    {8, R"-(pause)-"},
    {4, R"-(else)-"},
    {8, R"-(play)-"},
    {4, R"-(end if)-"},
    {0, R"-(end tell)-"},
    {0, R"-(return "toggled")-"},
};

inline const Lines previous = {
    {0, R"-(tell application "Music")-"},
    {4, R"-(if player position > 2 then)-"},
    {8, R"-(set player position to 0)-"},
    {4, R"-(else)-"},
    {8, R"-(previous track)-"},
    {4, R"-(end if)-"},
    {4, R"-(play)-"},
    {0, R"-(end tell)-"},
    {0, R"-(return "previous")-"},
};

inline const Lines next = {
    {0, R"-(tell application "Music")-"},
    {4, R"-(next track)-"},
    {4, R"-(play)-"},
    {0, R"-(end tell)-"},
    {0, R"-(return "next")-"},
};

}  // namespace vellora::script_lines
