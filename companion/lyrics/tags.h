#pragma once

#include <istream>
#include <map>
#include <string>
#include <vector>

#include "companion/song/lyric_file.h"
#include "companion/song/problem.h"

namespace vellora::companion {

// The lyrics that stand in one place of a file's tags.
struct TagLyrics {
  LyricFile file;
  std::string language;      // a BCP 47 tag, or "" where none is given
  bool translation = false;  // as their description says
};

// What an audio file's tags say.
struct AudioTags {
  std::map<std::string, std::string> tags;  // as of LyricFile
  std::string language;                     // of what is sung; a BCP 47 tag or ""
  std::vector<TagLyrics> lyrics;            // each with a line at least, in the file's order
};

enum class AudioParts { tags, tagsAndLength };

// Reads the tags of a file with this ending, one of `audioEndings` in lower case, and, if wanted,
// the length of its sound where the tags say none. See readAudio and readRecordingTags.
AudioTags readTags(const std::string& name, const std::string& ending, std::istream& bytes,
                   Problems& problems, AudioParts parts = AudioParts::tags);

}  // namespace vellora::companion
