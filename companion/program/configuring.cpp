#include "companion/program/configuring.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <iostream>
#include <string>
#include <system_error>
#include <vector>

#include "base/files.h"
#include "companion/settings/config_file.h"
#include "companion/song/text.h"

namespace vellora::companion {
namespace {

std::string originText(const SettingOrigin& origin, const Setting& setting, bool hasValue) {
  switch (origin.kind) {
    case SettingOrigin::Kind::commandLine:
      return "command line";
    case SettingOrigin::Kind::file:
      return "line " + std::to_string(origin.line);
    case SettingOrigin::Kind::fallback:
      break;
  }
  if (!hasValue) return "not set";
  return setting.otherwise.empty() ? "default" : "default: " + setting.otherwise;
}

int tell(const Options& options) {
  const bool there = fileExists(options.configFile);
  std::cout << "# " << cleaned(options.configFile.string())
            << (there ? "\n" : ", which is not there; --write makes it\n");
  std::vector<std::string> lines;
  std::size_t width = 0;
  for (const Setting& setting : allSettings()) {
    lines.push_back(setting.key + " = " + cleaned(shownSetting(setting, options)));
    width = std::max(width, lines.back().size());
  }
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const Setting& setting = allSettings()[i];
    std::cout << lines[i] << std::string(width - lines[i].size(), ' ') << "  ("
              << originText(options.origins[i], setting, !shownSetting(setting, options).empty())
              << ")\n";
  }
  std::cout << std::flush;
  return allWell;
}

int write(const std::filesystem::path& path) {
  std::error_code error;
  std::filesystem::create_directories(path.parent_path(), error);
  std::FILE* const file = std::fopen(path.c_str(), "wx");  // only where there is none
  if (file == nullptr) {
    const std::error_code reason(errno, std::generic_category());
    if (reason == std::errc::file_exists) {
      return fail(filesFailed, path.string() + " is there already, and stays as it is");
    }
    return fail(filesFailed, path.string() + " cannot be made: " + reason.message());
  }
  std::fclose(file);
  // In one step, so that no half of it is ever read.
  if (!writeFileAtomically(path, commentedConfig())) {
    return fail(filesFailed, path.string() + " cannot be written");
  }
  std::cout << path.string() << " was made" << std::endl;
  return allWell;
}

}  // namespace

int config(const Options& options) {
  if (options.configFile.empty()) {
    return fail(filesFailed, "no home folder is known, in which the settings' file could be");
  }
  return options.writeConfig ? write(options.configFile) : tell(options);
}

}  // namespace vellora::companion
