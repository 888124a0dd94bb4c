#pragma once

#include <string_view>

namespace vellora {

// The controller's own status lines; those of a composed reading stand in CompositionMessages. Each
// is the status item's tooltip and the message of the status file, to the character.
struct StatusMessages {
  static constexpr std::string_view followingForTessaly = "Following Music for Tessaly";
  static constexpr std::string_view waitingForLyrics = "Waiting for fresh lyrics from Tessaly";
  static constexpr std::string_view allowAccess =
      "Allow Vellora in System Settings → Privacy & Security → Accessibility";
  static constexpr std::string_view bringMusicToFront = "Ready — bring Music to the front";
  static constexpr std::string_view stopped = "Overlay stopped";
};

}  // namespace vellora
