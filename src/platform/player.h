#pragma once

#include <string_view>

#include "platform/accessibility_names.h"

namespace vellora {

// What a reading looks for in a player. Views of texts in UTF-8 that outlive the value. None of
// those compared with a player's answers has another canonical form, so bytes decide.
struct Player {
  std::string_view identifier;       // of the application
  std::string_view lyricsLabel;      // title or description of the element that holds the lyrics
  std::string_view titleIdentifier;  // of the element that carries title and artist
  std::string_view viewportRole;     // of the scroll area in the lyrics
  std::string_view rowRole;          // of a line in the lyrics
};

// The player that the overlay follows.
inline constexpr Player musicPlayer{
    .identifier = "com.apple.Music",
    .lyricsLabel = "Lyrics",
    .titleIdentifier = "Music.nowPlaying.title-Music.nowPlaying.subtitle",
    .viewportRole = AccessibilityRole::scrollArea,
    .rowRole = AccessibilityRole::button,
};

}  // namespace vellora
