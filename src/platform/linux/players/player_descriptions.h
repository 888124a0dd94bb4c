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

// "FILE:LINE: TEXT; REMEDY" in printable UTF-8, without the line where there is none.
std::string lineOf(const DescriptionProblem& problem);

struct ReadDescription {
  PlayerDescriptionPtr description;  // null where there are problems
  std::vector<DescriptionProblem> problems;
};

// Reads a description's text. Strict: an unknown group, key, role or value is a problem, and so is
// what is missing. The format is that of docs/vellora-player.5.
ReadDescription readDescription(std::string_view text, const std::string& file);

// Reads a description's file; that it cannot be read, or is no ordinary file, is a problem. Never
// waits for a FIFO's writer.
ReadDescription readDescriptionFile(const std::filesystem::path& file);

// A folder's file "*.player" whose name does not begin with a dot.
struct DescriptionFile {
  std::filesystem::path path;
  std::filesystem::path
      hiddenBy;  // the file of the same name in an earlier folder, if there is one
};
// In the folders' order, and by name in each. A folder that is not there has none.
std::vector<DescriptionFile> descriptionFiles(const std::vector<std::filesystem::path>& folders);

// The descriptions of those that are not hidden. Files with problems are left out and their
// problems listed; they hide others nevertheless.
struct DescriptionList {
  std::vector<PlayerDescriptionPtr> descriptions;
  std::vector<DescriptionProblem> problems;
};
DescriptionList readDescriptions(const std::vector<std::filesystem::path>& folders);

// The user's folder ($XDG_DATA_HOME/vellora/players, or ~/.local/share/…), then that of the
// installation or the build that the running program belongs to: ../share/vellora/players from its
// own folder.
std::vector<std::filesystem::path> descriptionFolders();

// What a window calls itself.
struct WindowNames {
  std::string classPart;      // of WM_CLASS
  std::string applicationId;  // _GTK_APPLICATION_ID, or a Wayland surface's
  bool operator==(const WindowNames&) const = default;
};

// Those whose window it may be, in the order in which they are to be tried: the list's.
std::vector<PlayerDescriptionPtr> descriptionsFor(
    const WindowNames& window, const std::vector<PlayerDescriptionPtr>& descriptions);

// Of those the ones whose page this may be, the most particular glob (that with most characters
// besides `*` and `?`) first, in their order where two are alike.
std::vector<PlayerDescriptionPtr> descriptionsForPage(
    const std::string& address, const std::vector<PlayerDescriptionPtr>& descriptions);

}  // namespace vellora
