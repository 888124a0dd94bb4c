#include "companion/settings/user_folders.h"

#include <string>
#include <string_view>
#include <system_error>

#include "base/files.h"
#include "companion/song/text.h"

namespace vellora::companion {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view musicKey = "XDG_MUSIC_DIR=\"";
constexpr std::string_view inHome = "$HOME";

// The value of a line XDG_MUSIC_DIR="$HOME/Music"; nothing for any other line. A backslash stands
// before what the shell would take for something else.
std::optional<std::string> musicValue(std::string_view line) {
  const auto begin = line.find_first_not_of(" \t");
  if (begin == std::string_view::npos || !line.substr(begin).starts_with(musicKey)) {
    return std::nullopt;
  }
  std::string value;
  for (std::size_t i = begin + musicKey.size(); i < line.size() && line[i] != '"'; ++i) {
    if (line[i] == '\\' && i + 1 < line.size()) ++i;
    value += line[i];
  }
  return value;
}

// What is no whole path is to be ignored, as the XDG Base Directory Specification has it.
std::optional<fs::path> folderNamed(const char* variable, const char* inTheHome,
                                    const Environment& environment) {
  const auto folder = environment(variable);
  if (folder && folder->starts_with('/')) return *folder;
  const auto home = environment("HOME");
  return home ? std::optional(fs::path(*home) / inTheHome) : std::nullopt;
}

}  // namespace

std::optional<fs::path> configFolder(const Environment& environment) {
  return folderNamed("XDG_CONFIG_HOME", ".config", environment);
}

std::optional<fs::path> stateFolder(const Environment& environment) {
  return folderNamed("XDG_STATE_HOME", ".local/state", environment);
}

std::optional<fs::path> cacheFolder(const Environment& environment) {
  const auto home = environment("HOME");
  std::error_code error;
  const bool caches = home && fs::is_directory(fs::path(*home) / "Library" / "Caches", error);
  return folderNamed("XDG_CACHE_HOME", caches ? "Library/Caches" : ".cache", environment);
}

std::optional<fs::path> musicFolder(const Environment& environment) {
  const auto home = environment("HOME");
  const auto settings = configFolder(environment);
  if (!home || !settings) return std::nullopt;
  std::string named = *home + "/Music";
  const auto text = readWholeFile(*settings / "user-dirs.dirs");
  forEachLine(text.value_or(""), [&](int, std::string_view line) {
    const auto value = musicValue(line);
    if (value && value->starts_with(inHome)) named = *home + value->substr(inHome.size());
    if (value && value->starts_with('/')) named = *value;
    return true;
  });
  std::error_code error;
  const bool usable =
      fs::is_directory(named, error) && !fs::equivalent(named, *home, error) && !error;
  return usable ? std::optional(fs::path(named)) : std::nullopt;
}

}  // namespace vellora::companion
