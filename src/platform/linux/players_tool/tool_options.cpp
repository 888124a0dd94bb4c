#include "platform/linux/players_tool/tool_options.h"

#include <algorithm>

#include "base/utf8.h"
#include "platform/linux/glib/quoted_text.h"

namespace vellora {

namespace {

constexpr const char* usage =
    "Tells which players Vellora knows by their descriptions, and what is wrong with a "
    "description.\n"
    "Usage: vellora-players list\n"
    "       vellora-players check FILE...\n"
    "\n"
    "Options:\n"
    "  -h, --help   print this and end\n"
    "  --version    print the version and end\n"
    "\n"
    "Commands:\n"
    "  list         each description with its windows, its file and what it hides\n"
    "  check        what is wrong with files, by line, and what to write instead\n"
    "\n"
    "Exit status: 0 all well; 1 a description has a problem; 2 wrong arguments.\n"
    "vellora-player(5) has the format of a description.\n";

PlayersToolAnswer wrong(const std::string& reason) {
  return {.status = wrongArguments,
          .text = "vellora-players: " + reason + "\nRun with --help for more information.\n"};
}

std::string quoted(const std::string& argument) { return inQuotes(wellFormed(argument)); }

bool isOption(const std::string& argument) { return argument.size() > 1 && argument[0] == '-'; }

}  // namespace

std::variant<PlayersToolOptions, PlayersToolAnswer> parsePlayersToolOptions(
    const std::vector<std::string>& arguments) {
  if (arguments.empty()) return wrong("say list or check");
  for (const std::string& argument : arguments) {
    if (argument == "--help" || argument == "-h") return PlayersToolAnswer{allWell, usage};
    if (argument == "--version") {
      return PlayersToolAnswer{allWell, "vellora-players " VELLORA_VERSION "\n"};
    }
    if (argument == "--") break;
  }
  PlayersToolOptions options;
  auto rest = arguments.begin() + 1;
  if (arguments[0] == "check") {
    options.task = PlayersToolOptions::Task::check;
    bool areFilesOnly = false;
    for (; rest != arguments.end(); ++rest) {
      if (!areFilesOnly && *rest == "--") {
        areFilesOnly = true;
      } else if (!areFilesOnly && isOption(*rest)) {
        return wrong("unknown option " + quoted(*rest));
      } else {
        options.files.push_back(*rest);
      }
    }
    if (options.files.empty()) return wrong("check which file?");
  } else if (arguments[0] != "list") {
    return wrong((isOption(arguments[0]) ? "unknown option " : "unknown command ") +
                 quoted(arguments[0]));
  }
  if (rest != arguments.end()) {
    return wrong((isOption(*rest) ? "unknown option " : "one word too many: ") + quoted(*rest));
  }
  return options;
}

}  // namespace vellora
