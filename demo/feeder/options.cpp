#include "feeder/options.h"

#include <cmath>
#include <cstddef>

#include "base/number_text.h"

namespace vellora::demo {
namespace {

std::optional<double> finiteNumber(std::string_view text) {
  const auto number = parseNumber(text);
  if (!number || !std::isfinite(*number)) return std::nullopt;
  return number;
}

bool setNumber(double& target, std::string_view text) {
  const auto number = finiteNumber(text);
  if (number) target = *number;
  return number.has_value();
}

// The command's parts may come in any order, and before --send itself.
struct Parts {
  FeederOptions options;
  MusicCommand command;
  bool send = false;
  bool commandPart = false;
};

enum class Verdict { taken, badValue, unknown };

Verdict setCommandValue(Parts& parts, std::string_view name, const std::string& value) {
  MusicCommand& command = parts.command;
  if (name == "--send") {
    const auto action = MusicCommand::actionNamed(value);
    if (!action) return Verdict::badValue;
    command.action = *action;
    parts.send = true;
    return Verdict::taken;
  }
  if (name == "--title") {
    command.title = value;
  } else if (name == "--artist") {
    command.artist = value;
  } else if (name == "--position") {
    if (!setNumber(command.position, value)) return Verdict::badValue;
  } else {
    return Verdict::unknown;
  }
  parts.commandPart = true;
  return Verdict::taken;
}

Verdict setValue(Parts& parts, std::string_view name, const std::string& value) {
  const auto verdict = [](bool good) { return good ? Verdict::taken : Verdict::badValue; };
  FeederOptions& options = parts.options;
  if (name == "--folder") {
    options.folder = std::filesystem::path(value).lexically_normal();
    if (!options.folder.has_filename()) options.folder = options.folder.parent_path();
    return verdict(options.folder.filename() == "Vellora");
  }
  if (name == "--songs") {
    options.songs = value;
    return verdict(!value.empty());
  }
  if (name == "--font-size") return verdict(setNumber(options.captions.fontSize, value));
  if (name == "--offset") return verdict(setNumber(options.captions.verticalOffset, value));
  return setCommandValue(parts, name, value);
}

}  // namespace

std::variant<FeederOptions, std::string> parseFeederOptions(
    const std::vector<std::string>& arguments, const std::filesystem::path& defaultSongs) {
  Parts parts;
  parts.options.songs = defaultSongs;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& name = arguments[i];
    if (name == "--help" || name == "-h") {
      parts.options.help = true;
      return parts.options;
    }
    const bool last = i + 1 == arguments.size();
    const std::string value = last ? std::string() : arguments[i + 1];
    switch (setValue(parts, name, value)) {
      case Verdict::unknown:
        return "unknown option " + name;
      case Verdict::badValue:
        return last ? name + " needs a value" : "\"" + value + "\" is no value for " + name;
      case Verdict::taken:
        if (last) return name + " needs a value";
        ++i;
    }
  }
  if (parts.options.folder.empty()) return "--folder is missing";
  if (parts.commandPart && !parts.send) return "--title, --artist and --position belong to --send";
  if (parts.send) parts.options.command = parts.command;
  return parts.options;
}

std::string_view feederHelp() {
  return R"(vellora-demo-feeder: feeds the overlay with the translations of the song that plays

  --folder DIR      the exchange folder; its own name must be "Vellora"; made where it is missing
  --songs DIR       the folder of songs
  --font-size N     the snapshot's font size in points (default 26)
  --offset N        moves the captions down by N points (default 0)
  --help            this text

It asks the overlay to publish what plays (sync.json), reads that (nowplaying.json), keeps
snapshot.json fresh with that song's lines, and ends when it is terminated.

  --send ACTION     instead of all that writes one player command (command.json) and ends; ACTION is
                    play, seek, playPause, previous or next
  --title TEXT, --artist TEXT, --position SECONDS   the command's other fields
)";
}

}  // namespace vellora::demo
