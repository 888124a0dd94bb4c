#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "companion/exchange/command_watch.h"
#include "companion/exchange/folder.h"
#include "companion/settings/setting.h"
#include "companion/settings/setting_origin.h"
#include "exchange/records/records.h"

namespace vellora::companion {

// The program's exit statuses; documented in the man page.
enum ExitStatus : int {
  allWell = 0,
  findings = 1,  // check and import: a song is incomplete, or a file has a mistake
  wrongArguments = 2,
  noOverlay = 3,    // no overlay answers
  noEffect = 4,     // the overlay took the command, but the player did not do it
  filesFailed = 5,  // a file or folder cannot be read or written
  folderTaken = 6,  // another companion feeds the exchange folder
};

// Says the message on standard error, after the program's name; hands the status back.
int fail(ExitStatus status, const std::string& message);

enum class Task { keep, command, status, check, import, config };

// "1:23", "83.5"; with "+" or "-" before it from where the player is.
std::optional<SeekTarget> parseSeekTarget(const std::string& text);

// What the command line and the settings' file ask for. `exchange` is then named "Vellora" and
// never empty for a task that needs it; `folder` is that of keep, check and import.
struct Options : Settings {
  Task task = Task::keep;
  std::filesystem::path programFolder;  // where this program lies; empty where it is not known
  MusicCommand command;                 // action, title, artist
  SeekTarget target;                    // of seek, and of play ("--at")
  std::filesystem::path importTo;
  bool force = false;
  bool json = false;
  bool writeConfig = false;
  std::filesystem::path configFile;    // empty where no home is known
  std::vector<SettingOrigin> origins;  // one for each of `allSettings()`
};

// What to print instead of doing anything, and the exit status.
struct Answer {
  std::string text;
  int status = allWell;
};

// `arguments` without the program's name. Reads the settings' file.
std::variant<Options, Answer> parseOptions(const std::vector<std::string>& arguments,
                                           const Environment& environment);

}  // namespace vellora::companion
