#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "exchange/records/records.h"
#include "feeder/feeder.h"

namespace vellora::demo {

// What the feeder's command line asks for.
struct FeederOptions {
  bool help = false;
  std::filesystem::path folder;  // the exchange folder, named "Vellora"
  std::filesystem::path songs;
  CaptionSettings captions;
  std::optional<MusicCommand> command;  // to be sent instead of feeding; requestedAt is not set
};

// The options, or what is wrong with them. `defaultSongs` where no folder of songs is named.
std::variant<FeederOptions, std::string> parseFeederOptions(
    const std::vector<std::string>& arguments, const std::filesystem::path& defaultSongs);

// The text of --help.
std::string_view feederHelp();

}  // namespace vellora::demo
