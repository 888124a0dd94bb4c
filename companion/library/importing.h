#pragma once

#include <filesystem>
#include <iosfwd>

#include "companion/library/checking.h"

namespace vellora::companion {

// Writes every song of the library to `to` as files that anybody's programs read: UTF-8, "Artist -
// Title.lrc" with "Artist - Title.LANGUAGE.lrc" beside it, or ".tsv" for songs without times. Files
// that are there stay unless `replace`; of two songs with equal names the second becomes "NAME
// (2)". Tells each song as a check does, and each file.
struct ImportSummary {
  CheckSummary check;
  std::size_t written = 0;  // files
  std::size_t kept = 0;     // songs that were there already
  bool failed = false;      // a file could not be written
};

ImportSummary importSongs(const Library& library, const std::filesystem::path& to, bool replace,
                          const CheckProgress& progress, std::ostream& out);

// A song's two files, or its one.
struct ImportedFiles {
  std::string lyrics;       // its text
  std::string translation;  // empty where the song has no times, or no translation
  const char* ending = ".lrc";
};

ImportedFiles filesOf(const LibrarySong& from, const Song& song);

// The name without characters that file systems or shells have a meaning for.
std::string fileNameOf(const LibrarySong& from);

}  // namespace vellora::companion
