#include "music/command_runner.h"

#include <cstdint>
#include <optional>
#include <ostream>
#include <string>

#include "base/fatal.h"
#include "base/number_text.h"
#include "music/command_script.h"

namespace vellora {

namespace {

std::int64_t requiredMilliseconds(double position) {
  const std::optional<std::int64_t> milliseconds = wholeMilliseconds(position);
  if (!milliseconds) {
    fatalError("the position " + plainNumber(position) +
               " has no whole number of milliseconds in 64 bits");
  }
  return *milliseconds;
}

}  // namespace

void runInMusic(const MusicCommand& command, MusicScripting& scripting, std::ostream& output) {
  const std::int64_t milliseconds = requiredMilliseconds(command.position);
  const ScriptOutcome outcome = scripting.run({
      .source = commandScript(command, milliseconds),
      .command = PlayerCommand{command, milliseconds, catalogueSearchLocation(command)},
  });
  const std::string reply = outcome.created ? outcome.reply.value_or("failed") : "failed";
  output << MusicCommand::name(command.action) << ' ' << command.title << ": " << reply
         << std::endl;
  if (outcome.created && outcome.errorDescription) {
    output << "Music command error: " << *outcome.errorDescription << std::endl;
  }
}

}  // namespace vellora
