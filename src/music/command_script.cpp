#include "music/command_script.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <utility>

#include "base/percent_encoding.h"

namespace vellora {

namespace {

constexpr std::string_view findTrack = R"(on findTrack()
    tell application "Music"
        set hits to (every track whose name is [TITLE] and artist is [ARTIST])
        if hits is {} then set hits to (every track whose name is [TITLE])
        if hits is not {} then return item 1 of hits
        repeat with pl in user playlists
            try
                set hits to (every track of pl whose name is [TITLE] and artist is [ARTIST])
                if hits is {} then set hits to (every track of pl whose name is [TITLE])
                if hits is {} then set hits to (every track of pl whose name contains [TITLE])
                if hits is not {} then return item 1 of hits
            end try
        end repeat
    end tell
    return missing value
end findTrack

)";

constexpr std::string_view playScript = R"(set found to findTrack()
if found is missing value then
    open location "[LOCATION]"
    return "searched"
end if
tell application "Music"
    activate
    play found
    if [MS] > 0 then set player position to ([MS] / 1000)
end tell
return "playing")";

constexpr std::string_view seekScript = R"(tell application "Music"
    set player position to ([MS] / 1000)
    play
end tell
return "seeked")";

constexpr std::string_view playPauseScript = R"(tell application "Music"
    if player state is playing then
        pause
    else
        play
    end if
end tell
return "toggled")";

constexpr std::string_view previousScript = R"(tell application "Music"
    if player position > 2 then
        set player position to 0
    else
        previous track
    end if
    play
end tell
return "previous")";

constexpr std::string_view nextScript = R"(tell application "Music"
    next track
    play
end tell
return "next")";

std::string_view actionScript(MusicCommand::Action action) {
  switch (action) {
    case MusicCommand::Action::play:
      return playScript;
    case MusicCommand::Action::seek:
      return seekScript;
    case MusicCommand::Action::playPause:
      return playPauseScript;
    case MusicCommand::Action::previous:
      return previousScript;
    case MusicCommand::Action::next:
      return nextScript;
  }
  return {};
}

using Blank = std::pair<std::string_view, std::string>;

// Fills the bracketed words in, in one pass: what is filled in is not looked at again.
template <std::size_t count>
std::string filled(std::string_view text, const std::array<Blank, count>& blanks) {
  std::string result;
  while (!text.empty()) {
    const auto blank = std::ranges::find_if(
        blanks, [&](const Blank& each) { return text.starts_with(each.first); });
    if (blank == blanks.end()) {
      result += text.front();
      text.remove_prefix(1);
    } else {
      result += blank->second;
      text.remove_prefix(blank->first.size());
    }
  }
  return result;
}

}  // namespace

std::string catalogueSearchLocation(const MusicCommand& command) {
  return std::string(catalogueSearch) +
         percentEncodedForQuery(command.artist + " " + command.title);
}

std::string quotedForScript(std::string_view text) {
  std::string result = "\"";
  for (const char c : text) {
    if (c == '"') result += '\\';
    result += c;
  }
  return result += '"';
}

std::optional<std::int64_t> wholeMilliseconds(double position) {
  const double milliseconds = std::round(position * 1000);
  // False for what is not a number, too. The upper limit is the first double that does not fit.
  if (!(milliseconds >= -0x1p63 && milliseconds < 0x1p63)) return std::nullopt;
  return static_cast<std::int64_t>(milliseconds);
}

std::string commandScript(const MusicCommand& command, std::int64_t milliseconds) {
  const std::array<Blank, 4> blanks{{
      {"[TITLE]", quotedForScript(command.title)},
      {"[ARTIST]", quotedForScript(command.artist)},
      {"[LOCATION]", catalogueSearchLocation(command)},
      {"[MS]", std::to_string(milliseconds)},
  }};
  return filled(findTrack, blanks) + filled(actionScript(command.action), blanks);
}

}  // namespace vellora
