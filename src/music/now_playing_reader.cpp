#include "music/now_playing_reader.h"

#include <algorithm>
#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

#include "base/number_text.h"
#include "music/now_playing_script.h"

namespace vellora {

namespace {

std::vector<std::string_view> fieldsOf(std::string_view reply) {
  std::vector<std::string_view> fields;
  while (true) {
    const std::size_t end = std::min(reply.find('|'), reply.size());
    fields.push_back(reply.substr(0, end));
    if (end == reply.size()) return fields;
    reply.remove_prefix(end + 1);
  }
}

}  // namespace

std::optional<NowPlayingTrack> nowPlayingTrack(std::string_view reply, const Clock& clock) {
  std::vector<std::string_view> fields = fieldsOf(reply);
  if (fields.size() < 2 || fields[0].empty()) return std::nullopt;
  fields.resize(std::max<std::size_t>(fields.size(), 5));
  const double milliseconds = parseNumber(fields[3]).value_or(0);
  return NowPlayingTrack(clock.now(), std::string(fields[0]), std::string(fields[1]),
                         std::string(fields[2]), milliseconds / 1000, fields[4] == "playing");
}

std::optional<NowPlayingTrack> readNowPlayingTrack(MusicScripting& scripting, const Clock& clock,
                                                   std::ostream& output) {
  const ScriptOutcome outcome =
      scripting.run({.source = std::string(nowPlayingScript), .command = std::nullopt});
  if (!outcome.created) return std::nullopt;
  if (outcome.errorDescription) {
    output << "Music script error: " << *outcome.errorDescription << std::endl;
  }
  return nowPlayingTrack(outcome.reply.value_or(""), clock);
}

}  // namespace vellora
