#pragma once

#include <map>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace vellora::demo {

// What is wrong with a song's file, and where.
struct SongError {
  std::string file;
  int line = 0;  // from 1; 0 where the whole file is meant
  std::string message;

  // "songs/x/lyrics.lrc:12: message"
  std::string text() const;
};

// One stamped line of an LRC file.
struct LrcLine {
  int centiseconds = 0;  // since the song's begin
  std::string text;      // never empty, no blanks at either end
  int number = 0;        // the line of the file, from 1
};

// An LRC file taken apart: tags by their key, lines in ascending order of time.
struct LrcFile {
  std::string name;
  std::map<std::string, std::string> tags;
  std::vector<LrcLine> lines;
};

// Reads the simple form of LRC that the songs are kept in: UTF-8; tags "[ti:Title]" first, then
// lines
// "[mm:ss.cc]text" whose times rise strictly; blank lines and lines that begin with "#" are
// skipped. `allowedTags` are the keys that may occur, each at most once and never empty. `name` is
// only used in errors. Pure, any thread.
std::variant<LrcFile, SongError> parseLrc(std::string_view name, std::string_view text,
                                          const std::vector<std::string>& allowedTags);

// "mm:ss" or "mm:ss.cc" in hundredths of a second, or -1 where the text is no such time.
int parseStamp(std::string_view text);

}  // namespace vellora::demo
