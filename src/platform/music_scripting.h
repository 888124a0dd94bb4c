#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "exchange/records/records.h"

namespace vellora {

// A command in the form in which a player that runs no scripts can carry it out.
struct PlayerCommand {
  MusicCommand command;
  std::int64_t milliseconds = 0;  // the command's position
  std::string searchLocation;     // URL of the catalogue search for the command's track
};

// One request to the player: the script's text and, beside it, the same meaning as a value.
struct ScriptRequest {
  std::string source;
  std::optional<PlayerCommand> command;  // absent: the question what is playing
};

// What became of a request. A reply and an error may come together.
struct ScriptOutcome {
  bool created = false;                         // false: the script could not even be made
  std::optional<std::string> reply;             // text value of the answer
  std::optional<std::string> errorDescription;  // as the platform words it
};

// Runs requests in the player. Main thread; returns when the player has answered or the backend
// gave up on it.
class MusicScripting {
 public:
  virtual ~MusicScripting() = default;

  virtual ScriptOutcome run(const ScriptRequest& request) = 0;
};

}  // namespace vellora
