// vellora-players: tells which players Vellora knows by their descriptions, what is wrong with a
// description, and what Vellora finds in a window.
#include <chrono>
#include <iostream>
#include <string>
#include <variant>
#include <vector>

#include "platform/linux/accessibility/view_explanation.h"
#include "platform/linux/glib/waiting_room.h"
#include "platform/linux/players/player_descriptions.h"
#include "platform/linux/players_tool/front_window.h"
#include "platform/linux/players_tool/listing.h"
#include "platform/linux/players_tool/showing.h"
#include "platform/linux/players_tool/tool_options.h"

namespace vellora {
namespace {

constexpr std::chrono::milliseconds patience(3000);  // with a program's answers
constexpr std::chrono::milliseconds longestLook(3000);
constexpr std::chrono::milliseconds pause(250);  // between two looks

void waitFor(std::chrono::milliseconds span) {
  WaitingRoom().waitUntil([] { return false; }, Deadline(span));
}

// A browser gives its content some time after it was asked for it.
WindowExplanation lookThrough(const PlayerWindow& window) {
  const Deadline deadline(longestLook);
  WindowExplanation found = explainWindow(window, patience);
  while (!hasRows(found) && !deadline.passed()) {
    waitFor(pause);
    found = explainWindow(window, patience);
  }
  return found;
}

bool show(const PlayersToolOptions& options) {
  DescriptionList list = readDescriptions(descriptionFolders());
  for (const DescriptionProblem& problem : list.problems) std::cerr << lineOf(problem) << '\n';
  waitFor(std::chrono::seconds(options.wait));
  const FrontWindowAnswer front = findFrontWindow(list.descriptions);
  for (const std::string& line : front.lines) std::cerr << "vellora-players: " << line << '\n';
  if (!front.window) {
    std::cerr << "vellora-players: " << front.reason << '\n';
    return false;
  }
  const WindowExplanation found = lookThrough(front.window->player);
  showWindow(*front.window, found, std::cout);
  return hasRows(found);
}

bool carryOut(const PlayersToolOptions& options) {
  switch (options.task) {
    case PlayersToolOptions::Task::check:
      return checkDescriptions({options.files.begin(), options.files.end()}, descriptionFolders(),
                               std::cout);
    case PlayersToolOptions::Task::show:
      return show(options);
    case PlayersToolOptions::Task::list:
      break;
  }
  return listDescriptions(descriptionFolders(), std::cout);
}

}  // namespace
}  // namespace vellora

int main(int count, char** values) {
  using namespace vellora;
  const auto parsed = parsePlayersToolOptions(
      std::vector<std::string>(values + (count > 0 ? 1 : 0), values + count));
  if (const auto* answer = std::get_if<PlayersToolAnswer>(&parsed)) {
    (answer->status == allWell ? std::cout : std::cerr) << answer->text;
    return answer->status;
  }
  return carryOut(std::get<PlayersToolOptions>(parsed)) ? allWell : problemsFound;
}
