#include "companion/settings/config_file.h"

#include <algorithm>
#include <cstddef>

#include "base/nearest_word.h"
#include "companion/settings/user_folders.h"
#include "companion/song/text.h"

namespace vellora::companion {
namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view blanks = " \t";

std::string_view trimmed(std::string_view text) {
  const auto begin = text.find_first_not_of(blanks);
  if (begin == std::string_view::npos) return {};
  return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

std::string exampleOf(const Setting& setting) {
  const std::string usual = shownSetting(setting, Settings());
  return setting.key + " = " + (usual.empty() ? setting.example : usual);
}

std::string remedyForUnknown(const std::string& key) {
  std::vector<std::string_view> keys;
  for (const Setting& setting : allSettings()) keys.push_back(setting.key);
  const std::string_view nearest = nearestWord(key, keys);
  if (!nearest.empty()) return "is \"" + std::string(nearest) + "\" meant?";
  return "vellora-companion(1) lists the keys";
}

// A path that means the same wherever the program is started; nothing where it does not.
std::optional<std::string> settledPath(const std::string& value,
                                       const std::optional<std::string>& home) {
  if (value.starts_with('/')) return value;
  if (!home || (value != "~" && !value.starts_with("~/"))) return std::nullopt;
  return *home + value.substr(1);
}

std::string remedyForValue(const Setting& setting, const std::string& value) {
  if (value.find('#') != std::string::npos) return "a comment stands on a line of its own";
  if (value.empty()) return "put a # before the line to have what holds without it";
  return "write for example " + exampleOf(setting);
}

}  // namespace

std::optional<std::filesystem::path> configFilePath(const Environment& environment) {
  const auto folder = configFolder(environment);
  if (!folder) return std::nullopt;
  return *folder / "vellora" / "companion.conf";
}

std::vector<ConfigEntry> readConfigText(std::string_view text, Problems& problems) {
  if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
  std::vector<ConfigEntry> entries;
  forEachLine(text, [&](int number, std::string_view whole) {
    const std::string_view line = trimmed(whole);
    if (line.empty() || line.front() == '#') return true;
    const auto equals = line.find('=');
    if (line.front() == '[') {
      problems.fail(number, "the file has no sections", "take this line out");
    } else if (equals == std::string_view::npos || equals == 0) {
      problems.fail(number, inQuotes(line) + " is no setting", "write key = value");
    } else {
      entries.push_back({std::string(trimmed(line.substr(0, equals))),
                         std::string(trimmed(line.substr(equals + 1))), number});
    }
    return true;
  });
  return entries;
}

std::vector<int> takeConfig(const std::vector<ConfigEntry>& entries,
                            const std::optional<std::string>& home, Settings& settings,
                            Problems& problems) {
  const auto all = allSettings();
  std::vector<int> lines(all.size());
  for (const ConfigEntry& entry : entries) {
    const auto setting = std::ranges::find(all, entry.key, &Setting::key);
    if (setting == all.end()) {
      problems.fail(entry.line, "no setting is called " + inQuotes(entry.key),
                    remedyForUnknown(entry.key));
      continue;
    }
    int& line = lines[static_cast<std::size_t>(setting - all.begin())];
    if (line != 0) {
      problems.fail(entry.line,
                    entry.key + " is set a second time, after line " + std::to_string(line),
                    "take one of the lines out");
      continue;
    }
    line = entry.line;
    std::string value = entry.value;
    if (std::holds_alternative<PathValue>(setting->value) && !value.empty()) {
      const auto path = settledPath(value, home);
      if (!path) {
        problems.fail(entry.line,
                      entry.key + ": " + inQuotes(value) + " depends on where one stands",
                      "name it from the root on, or from the home folder as ~/Music");
        continue;
      }
      value = *path;
    }
    const std::string mistake = takeSetting(*setting, value, settings);
    if (!mistake.empty()) {
      problems.fail(entry.line, entry.key + ": " + mistake, remedyForValue(*setting, value));
    }
  }
  return lines;
}

std::string commentedConfig() {
  std::string text =
      "# Settings of vellora-companion(1), a line each: key = value. A line that begins with #\n"
      "# changes nothing: take the # away to set what it says. The command line comes first.\n";
  for (const Setting& setting : allSettings()) {
    text += "\n# " + setting.key + ": " + setting.fullHelp() + "\n#" + exampleOf(setting) + "\n";
  }
  return text;
}

}  // namespace vellora::companion
