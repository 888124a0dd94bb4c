#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/players/player_description.h"

namespace vellora {

// A mistake in a description's file, for the person who writes it.
struct DescriptionProblem {
  std::string file;
  int line = 0;  // from 1; 0: of the file as a whole
  std::string text;
  std::string remedy;
};

struct ReadDescription {
  PlayerDescriptionPtr description;  // null where there are problems
  std::vector<DescriptionProblem> problems;
};

// Reads a description's text. Strict: an unknown group, key, role or value is a problem, and so is
// what is missing. The format is that of docs/vellora-player.5.
ReadDescription readDescription(std::string_view text, const std::string& file);

// The descriptions of these folders' files "*.player", in the folders' order; a file hides those of
// the same name in later folders. Files with problems are left out and their problems listed.
struct DescriptionList {
  std::vector<PlayerDescriptionPtr> descriptions;
  std::vector<DescriptionProblem> problems;
};
DescriptionList readDescriptions(const std::vector<std::filesystem::path>& folders);

// The user's folder ($XDG_DATA_HOME/vellora/players, or ~/.local/share/…), then that of this
// installation: beside the running program's prefix (../share/vellora/players), or in the sources
// that it was built from.
std::vector<std::filesystem::path> descriptionFolders();

// What a window calls itself.
struct WindowNames {
  std::string classPart;      // of WM_CLASS
  std::string applicationId;  // _GTK_APPLICATION_ID, or a Wayland surface's
};

// Those whose window it may be, in the order in which they are to be tried: the list's.
std::vector<PlayerDescriptionPtr> descriptionsFor(
    const WindowNames& window, const std::vector<PlayerDescriptionPtr>& descriptions);

// Of those the ones whose page this may be, the most particular glob (that with most characters
// besides `*` and `?`) first, in their order where two are alike.
std::vector<PlayerDescriptionPtr> descriptionsForPage(
    const std::string& address, const std::vector<PlayerDescriptionPtr>& descriptions);

}  // namespace vellora
