#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "companion/song/problem.h"

namespace vellora::companion {

// Most lines that are taken of a file.
inline constexpr std::size_t mostLines = 5000;

// One line of a file of lyrics.
struct FileLine {
  std::optional<double> time;  // seconds since the song's beginning
  std::string text;            // cleaned; empty for a pause or a blank line
  std::string translation;     // where the file itself holds one; else empty
  int number = 0;              // the line of the file, from 1

  bool operator==(const FileLine&) const = default;
};

// A file of lyrics, of a translation, or of both, taken apart.
struct LyricFile {
  std::string name;                         // as the user knows it
  std::map<std::string, std::string> tags;  // ti, ar, al, la …; keys in lower case
  std::vector<FileLine> lines;              // in order of time where they have times
  std::set<std::string> languages;          // of the translations within it, as far as it says
  // By how many seconds its lines come sooner than their stamps say.
  double offset = 0;
  // Whether a second line with the same time may be the translation of the first.
  bool mayBeBilingual = false;
  // A table: lines that hold source and translation themselves, to be looked up by their text.
  bool isTable = false;
  std::vector<Problem> problems;
  // How many lines, or translations of lines, are left out because of mistakes that are told: at
  // least so many where the file goes on, `mostLines` where nothing of it can be read.
  std::size_t lost = 0;

  bool timed() const { return !lines.empty() && lines.front().time.has_value(); }
};

// Whether it says by its tag "au" that nothing is sung, as services have it in LRC.
bool isInstrumental(const LyricFile& file);

// Whether the file, which is being read, may have one line more. Where it may not, that is told for
// its line `number`, and what is left out counts as lost.
bool hasRoom(LyricFile& file, Problems& problems, int number);

// A file as its reader hands it back: with its problems, and lines that have times in the order of
// these, those of one time as they stand in the file. Either all lines have times or none has.
// Where no line has a text, and not because of mistakes that are told, it is told that there are
// none, with what `form` says of how one looks.
LyricFile finished(LyricFile file, Problems problems, std::string form);

}  // namespace vellora::companion
