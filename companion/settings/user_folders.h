#pragma once

#include <filesystem>
#include <optional>

#include "companion/exchange/folder.h"

namespace vellora::companion {

// Where the user's programs keep their settings: $XDG_CONFIG_HOME, else ~/.config (XDG Base
// Directory Specification; on macOS too). Nothing where no home is known. Any thread.
std::optional<std::filesystem::path> configFolder(const Environment& environment);

// Where programs keep what is to last from one start to the next: $XDG_STATE_HOME, else
// ~/.local/state (the same specification; on macOS too). Nothing where no home is known. Any
// thread.
std::optional<std::filesystem::path> stateFolder(const Environment& environment);

// Where programs keep what they can have again: $XDG_CACHE_HOME, else ~/Library/Caches where that
// exists, else ~/.cache (the same specification). Nothing where no home is known. Any thread.
std::optional<std::filesystem::path> cacheFolder(const Environment& environment);

// The user's folder of music: XDG_MUSIC_DIR in the file user-dirs.dirs (xdg-user-dirs), else
// ~/Music. Nothing where that is no folder, or the home folder itself, which the file has for a
// folder that is not wanted. Any thread.
std::optional<std::filesystem::path> musicFolder(const Environment& environment);

}  // namespace vellora::companion
