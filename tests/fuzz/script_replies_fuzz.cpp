#include <algorithm>
#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "base/number_text.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/fuzz_targets.h"
#include "music/command_runner.h"
#include "music/command_script.h"
#include "music/now_playing_reader.h"
#include "support/fake_clock.h"
#include "support/fake_music_scripting.h"

namespace vellora {

namespace {

// The reply taken apart by hand.
std::vector<std::string> fields(const std::string& reply) {
  std::vector<std::string> result(1);
  for (const char c : reply) {
    if (c == '|') {
      result.emplace_back();
    } else {
      result.back() += c;
    }
  }
  return result;
}

void requireTrack(const std::string& reply) {
  const FakeClock clock;
  FakeMusicScripting scripting;
  scripting.standing = FakeMusicScripting::reply(reply);
  std::ostringstream output;
  const auto track = readNowPlayingTrack(scripting, clock, output);
  std::vector<std::string> parts = fields(reply);
  const bool usable = parts.size() >= 2 && !parts[0].empty();
  require(track.has_value() == usable, "a track for a reply with title and artist");
  require(output.str().empty(), "nothing to say without an error");
  if (!track) return;
  parts.resize(std::max<std::size_t>(parts.size(), 5));
  require(track->title == parts[0] && track->artist == parts[1] && track->album == parts[2],
          "the texts of a reply");
  require(track->playing == (parts[4] == "playing"), "the state of a reply");
  const double position = parseNumber(parts[3]).value_or(0) / 1000;
  require(track->position == position || (std::isnan(position) && std::isnan(track->position)),
          "the position of a reply");
  require(track->updatedAt == clock.now() && track->version == 1, "the time of a reply");
}

std::size_t countOf(std::string_view text, char sought) {
  return static_cast<std::size_t>(std::ranges::count(text, sought));
}

void requireScript(const std::string& title, const std::string& artist, double position) {
  const auto milliseconds = wholeMilliseconds(position);
  const bool fits = std::fabs(std::round(position * 1000)) < 9223372036854775808.0 ||
                    std::round(position * 1000) == -9223372036854775808.0;
  require(milliseconds.has_value() == fits, "a position in milliseconds");
  const std::string quoted = quotedForScript(title);
  require(quoted.size() == title.size() + countOf(title, '"') + 2, "a quoted text");
  if (!milliseconds) return;  // such a command ends the process
  FakeMusicScripting scripting;
  scripting.standing = FakeMusicScripting::reply("next");
  std::ostringstream output;
  runInMusic(MusicCommand(1, MusicCommand::Action::next, title, artist, position), scripting,
             output);
  require(output.str() == "next " + title + ": next\n", "the line of a command");
  require(scripting.requests.size() == 1, "one script a command");
  require(scripting.requests[0].source.starts_with("on findTrack()\n"), "a command's script");
  require(scripting.requests[0].source.ends_with("return \"next\""), "a command's action");
}

}  // namespace

void fuzzScriptReplies(std::string_view bytes) {
  FuzzInput input(bytes);
  const double position = input.number();
  const std::string title(input.takeUntil('|'));
  const std::string artist(input.takeUntil('|'));
  requireScript(title, artist, position);
  requireTrack(std::string(bytes.substr(std::min<std::size_t>(8, bytes.size()))));
}

}  // namespace vellora
