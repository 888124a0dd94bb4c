#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace vellora::demo {

// A window's size and place, in pixels.
struct Geometry {
  int width = 1000;
  int height = 700;
  std::optional<int> x;  // both or neither; neither leaves the place to the window manager
  std::optional<int> y;
};

// What the player's command line asks for.
struct PlayerOptions {
  bool help = false;
  std::filesystem::path library;
  std::string song = "1";
  double position = 0;  // seconds
  double speed = 1;
  bool paused = false;
  bool lyrics = true;
  Geometry geometry;
};

// "WIDTHxHEIGHT", "WIDTHxHEIGHT+X+Y".
std::optional<Geometry> parseGeometry(std::string_view text);

// The options, or what is wrong with them. `defaultLibrary` where none is named.
std::variant<PlayerOptions, std::string> parsePlayerOptions(
    const std::vector<std::string>& arguments, const std::filesystem::path& defaultLibrary);

// The text of --help.
std::string_view playerHelp();

}  // namespace vellora::demo
