#include "player/options.h"

#include <charconv>
#include <cmath>
#include <cstddef>
#include <system_error>

#include "base/number_text.h"
#include "playback/playback.h"

namespace vellora::demo {
namespace {

// Reads a whole number without a sign from the front of `text`.
std::optional<int> takeNumber(std::string_view& text) {
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || number < 0 || text.front() == '-') return std::nullopt;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return number;
}

bool take(std::string_view& text, char c) {
  if (text.empty() || text.front() != c) return false;
  text.remove_prefix(1);
  return true;
}

bool setValue(PlayerOptions& options, std::string_view name, const std::string& value) {
  if (name == "--song") {
    options.song = value;
    return !value.empty();
  }
  if (name == "--library") {
    options.library = value;
    return !value.empty();
  }
  if (name == "--geometry") {
    const auto geometry = parseGeometry(value);
    if (geometry) options.geometry = *geometry;
    return geometry.has_value();
  }
  const auto number = parseNumber(value);
  if (!number || !std::isfinite(*number) || *number < 0) return false;
  if (name == "--position") {
    options.position = *number;
    return true;
  }
  options.speed = *number;
  return *number >= Playback::minimumRate && *number <= Playback::maximumRate;
}

}  // namespace

std::optional<Geometry> parseGeometry(std::string_view text) {
  const auto width = takeNumber(text);
  if (!width || !take(text, 'x')) return std::nullopt;
  const auto height = takeNumber(text);
  if (!height || *width == 0 || *height == 0) return std::nullopt;
  Geometry geometry{*width, *height, std::nullopt, std::nullopt};
  if (text.empty()) return geometry;
  if (!take(text, '+')) return std::nullopt;
  geometry.x = takeNumber(text);
  if (!geometry.x || !take(text, '+')) return std::nullopt;
  geometry.y = takeNumber(text);
  if (!geometry.y || !text.empty()) return std::nullopt;
  return geometry;
}

std::variant<PlayerOptions, std::string> parsePlayerOptions(
    const std::vector<std::string>& arguments, const std::filesystem::path& defaultLibrary) {
  PlayerOptions options;
  options.library = defaultLibrary;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& name = arguments[i];
    if (name == "--help" || name == "-h") {
      options.help = true;
    } else if (name == "--paused") {
      options.paused = true;
    } else if (name == "--lyrics" || name == "--no-lyrics") {
      options.lyrics = name == "--lyrics";
    } else if (name == "--song" || name == "--library" || name == "--geometry" ||
               name == "--position" || name == "--speed") {
      if (++i == arguments.size()) return name + " needs a value";
      if (!setValue(options, name, arguments[i])) {
        return "\"" + arguments[i] + "\" is no value for " + name;
      }
    } else {
      return "unknown option " + name;
    }
  }
  return options;
}

std::string_view playerHelp() {
  return R"(vellora-demo-player: a stand-in music player with a Lyrics view; plays by its clock, silently

  --song N|TITLE      the song to begin with: its number from 1, title or folder (default 1)
  --position SECONDS  where in the song to begin (default 0)
  --paused            begin paused
  --speed RATE        how fast to play, 0.25 to 8 (default 1)
  --no-lyrics         begin without the Lyrics view; --lyrics: with it (default)
  --geometry WxH+X+Y  size and, if given, place of the window (default 1000x700)
  --library DIR       the folder of songs
  --help              this text

Keys: space plays and pauses, left and right move by 5 seconds, up and down change the song,
l shows and hides the lyrics, Ctrl+Q quits. A click on a line goes there.
)";
}

}  // namespace vellora::demo
