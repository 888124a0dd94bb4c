#include "platform/linux/players_tool/tool_options.h"

#include <charconv>
#include <span>
#include <system_error>

#include "base/utf8.h"
#include "platform/linux/glib/quoted_text.h"

namespace vellora {

namespace {

constexpr const char* usage =
    "Tells which players Vellora knows by their descriptions, what is wrong with a description, "
    "and\n"
    "what Vellora finds in a window.\n"
    "Usage: vellora-players list\n"
    "       vellora-players check FILE...\n"
    "       vellora-players show [--wait SECONDS]\n"
    "\n"
    "Options:\n"
    "  -h, --help   print this and end\n"
    "  --version    print the version and end\n"
    "\n"
    "Commands:\n"
    "  list         each description with its windows, its file and what it hides\n"
    "  check        what is wrong with files, by line, and what to write instead\n"
    "  show         what is found in the window in front, and what a description could say\n"
    "\n"
    "Exit status: 0 all well; 1 a description has a problem, or no rows were found; 2 wrong "
    "arguments.\n"
    "vellora-player(5) has the format of a description.\n";

constexpr const char* showUsage =
    "Tells what Vellora finds in the window in front, row by row, which description counts and "
    "why\n"
    "others do not, and what a description of it could say.\n"
    "Usage: vellora-players show [--wait SECONDS]\n"
    "\n"
    "Options:\n"
    "  -h, --help       print this and end\n"
    "  --wait SECONDS   the time to bring the player to the front; 0 to 600 (default 0)\n"
    "\n"
    "Exit status: 0 rows were found; 1 none were; 2 wrong arguments.\n";

constexpr int longestWait = 600;  // seconds

PlayersToolAnswer wrong(const std::string& reason) {
  return {.status = wrongArguments,
          .text = "vellora-players: " + reason + "\nRun with --help for more information.\n"};
}

std::string quoted(const std::string& argument) { return inQuotes(wellFormed(argument)); }

bool isOption(const std::string& argument) { return argument.size() > 1 && argument[0] == '-'; }

// Takes what follows a command, and says what is wrong with it.
class Arguments {
 public:
  explicit Arguments(std::span<const std::string> words) : words_(words) {}

  std::string take(PlayersToolOptions& options) {
    for (; !words_.empty(); words_ = words_.subspan(1)) {
      const std::string& word = words_[0];
      const bool isShow = options.task == PlayersToolOptions::Task::show;
      if (word == "--" && !areFilesOnly_) {
        areFilesOnly_ = true;
      } else if (word == "--wait" && isShow && !areFilesOnly_) {
        if (!takeWait(options)) return "--wait wants whole seconds, 0 to 600";
      } else if (isOption(word) && !areFilesOnly_) {
        return "unknown option " + quoted(word);
      } else if (options.task == PlayersToolOptions::Task::check) {
        options.files.push_back(word);
      } else {
        return "one word too many: " + quoted(word);
      }
    }
    const bool lacksFiles =
        options.task == PlayersToolOptions::Task::check && options.files.empty();
    return lacksFiles ? "check which file?" : "";
  }

 private:
  bool takeWait(PlayersToolOptions& options) {
    if (words_.size() < 2) return false;
    words_ = words_.subspan(1);
    const std::string& word = words_[0];
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), options.wait);
    return error == std::errc() && end == word.data() + word.size() && options.wait >= 0 &&
           options.wait <= longestWait;
  }

  std::span<const std::string> words_;
  bool areFilesOnly_ = false;
};

}  // namespace

std::variant<PlayersToolOptions, PlayersToolAnswer> parsePlayersToolOptions(
    const std::vector<std::string>& arguments) {
  if (arguments.empty()) return wrong("say list, check or show");
  for (const std::string& argument : arguments) {
    if (argument == "--help" || argument == "-h") {
      return PlayersToolAnswer{allWell, arguments[0] == "show" ? showUsage : usage};
    }
    if (argument == "--version") {
      return PlayersToolAnswer{allWell, "vellora-players " VELLORA_VERSION "\n"};
    }
    if (argument == "--") break;
  }
  using Task = PlayersToolOptions::Task;
  PlayersToolOptions options;
  const std::string& command = arguments[0];
  if (command == "check" || command == "show") {
    options.task = command == "check" ? Task::check : Task::show;
  } else if (command != "list") {
    return wrong((isOption(command) ? "unknown option " : "unknown command ") + quoted(command));
  }
  const std::string reason = Arguments(std::span(arguments).subspan(1)).take(options);
  if (!reason.empty()) return wrong(reason);
  return options;
}

}  // namespace vellora
