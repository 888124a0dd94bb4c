#pragma once

#include <array>
#include <filesystem>
#include <string>
#include <string_view>

#include "companion/song/lyric_file.h"

namespace vellora::companion {

// The endings of the files that can be read, in the order in which one is preferred to the next
// where a song has several.
inline constexpr std::array<std::string_view, 6> readableEndings{".lrc", ".ttml", ".srt",
                                                                 ".txt", ".po",   ".tsv"};

// The ending of `path` in lower case where it is one of these, else "".
std::string readableEnding(const std::filesystem::path& path);
// Whether that is the ending of a table (see LyricFile::isTable).
bool isTable(const std::filesystem::path& path);

// Reads a file as its ending says, which may be that of an audio file too (see readAudio).
// `wantedLanguage`, a BCP 47 tag or "", chooses among several translations within one file. A file
// that cannot be read, is no text, or is larger than 16 MiB and no audio file has no lines and a
// problem that says so. Any thread.
LyricFile readLyricFile(const std::filesystem::path& path, std::string_view wantedLanguage);

// The same for bytes that are at hand; `name` stands in the problems and its ending says the
// format.
LyricFile readLyrics(const std::filesystem::path& name, std::string_view bytes,
                     std::string_view wantedLanguage);

}  // namespace vellora::companion
