#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "exchange/records/records.h"

namespace vellora {

// Where a track that is not in the library is searched for, up to its search term. Apple's public
// links into its catalogue all live on this host (https://music.apple.com/…), and with the scheme
// "music" the same links open in the player itself.
inline constexpr std::string_view catalogueSearch = "music://music.apple.com/search?term=";

// The catalogue search for the command's track: its artist, a space and its title.
std::string catalogueSearchLocation(const MusicCommand& command);

// A text as an AppleScript literal. Only double quotes are escaped: a backslash stays single.
std::string quotedForScript(std::string_view text);

// A position in seconds as whole milliseconds, halves away from zero. Nothing where the product is
// not finite or does not fit.
std::optional<std::int64_t> wholeMilliseconds(double position);

// The AppleScript that carries the command out: the handler that finds its track, which every
// script has, then the action's own lines. Its value is one word. Fixed to the character: the texts
// are the contract with the player. Positions are divided inside the script, so that no decimal
// separator is ever part of it.
std::string commandScript(const MusicCommand& command, std::int64_t milliseconds);

}  // namespace vellora
