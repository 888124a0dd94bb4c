#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "companion/exchange/folder.h"
#include "companion/settings/setting.h"
#include "companion/song/problem.h"

namespace vellora::companion {

// Where the settings' file lies: vellora/companion.conf in the folder of settings. Nothing where no
// home is known. Any thread.
std::optional<std::filesystem::path> configFilePath(const Environment& environment);

// A line "key = value".
struct ConfigEntry {
  std::string key;
  std::string value;
  int line = 0;  // from 1
};

// The entries of a file's text: one in a line, without the blanks around key and value. Lines that
// are empty or begin with "#" are none; a "#" further on belongs to the value. Any thread.
std::vector<ConfigEntry> readConfigText(std::string_view text, Problems& problems);

// Puts the entries into the settings. For each of `allSettings()` the line that it was taken from;
// 0 where there is none. Paths are named from the root on, or with "~/" from `home`. Any thread.
std::vector<int> takeConfig(const std::vector<ConfigEntry>& entries,
                            const std::optional<std::string>& home, Settings& settings,
                            Problems& problems);

// A file that shows and explains all settings and changes none. Any thread.
std::string commentedConfig();

}  // namespace vellora::companion
