#pragma once

#include <string>

#include "companion/song/song.h"

namespace vellora::companion {

// "100 source=translation|250 source": times in hundredths of a second, so that a table can be
// read.
template <typename Lines, typename Source>
std::string textOfLines(const Lines& lines, Source source) {
  std::string result;
  for (const auto& line : lines) {
    if (!result.empty()) result += "|";
    if (line.time) result += std::to_string(static_cast<int>(*line.time * 100 + 0.5)) + " ";
    result += source(line);
    if (!line.translation.empty()) result += "=" + line.translation;
  }
  return result;
}

inline std::string textOf(const LyricFile& file) {
  return textOfLines(file.lines, [](const FileLine& line) { return line.text; });
}

inline std::string textOf(const Song& song) {
  return textOfLines(song.lines, [](const SongLine& line) { return line.source; });
}

// The problems, one a line.
inline std::string textOf(const std::vector<Problem>& problems) {
  std::string result;
  for (const Problem& problem : problems) {
    if (!result.empty()) result += "\n";
    result += problem.text();
  }
  return result;
}

}  // namespace vellora::companion
