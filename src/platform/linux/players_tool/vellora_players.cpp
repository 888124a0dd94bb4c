// vellora-players: tells which players Vellora knows by their descriptions, what is wrong with a
// description, and what it finds.
#include <iostream>
#include <string>
#include <variant>
#include <vector>

#include "platform/linux/players/player_descriptions.h"
#include "platform/linux/players_tool/listing.h"
#include "platform/linux/players_tool/tool_options.h"

int main(int count, char** values) {
  using namespace vellora;
  const auto parsed = parsePlayersToolOptions(
      std::vector<std::string>(values + (count > 0 ? 1 : 0), values + count));
  if (const auto* answer = std::get_if<PlayersToolAnswer>(&parsed)) {
    (answer->status == allWell ? std::cout : std::cerr) << answer->text;
    return answer->status;
  }
  const auto& options = std::get<PlayersToolOptions>(parsed);
  const auto folders = descriptionFolders();
  const bool isWell =
      options.task == PlayersToolOptions::Task::list
          ? listDescriptions(folders, std::cout)
          : checkDescriptions({options.files.begin(), options.files.end()}, folders, std::cout);
  return isWell ? allWell : problemsFound;
}
