#pragma once

#include <string>
#include <variant>
#include <vector>

namespace vellora {

enum PlayersToolStatus { allWell = 0, problemsFound = 1, wrongArguments = 2 };

// What vellora-players is to do.
struct PlayersToolOptions {
  enum class Task { list, check, show };
  Task task = Task::list;
  std::vector<std::string> files;  // to check
  int wait = 0;                    // seconds before a window is shown
};

// What it says instead: its help, its version, or what is wrong with its arguments.
struct PlayersToolAnswer {
  PlayersToolStatus status = allWell;
  std::string text;
};

// Of the arguments without the program's name.
std::variant<PlayersToolOptions, PlayersToolAnswer> parsePlayersToolOptions(
    const std::vector<std::string>& arguments);

}  // namespace vellora
