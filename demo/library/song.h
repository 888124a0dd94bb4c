#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "companion/song/problem.h"

namespace vellora::demo {

// What is wrong with a song's file, and where.
using SongError = companion::Problem;

// One line of a song's lyrics.
struct SongLine {
  double time = 0;  // seconds since the song's beginning
  std::string text;
  std::optional<std::string>
      translation;  // absent where the song's translation leaves the line out
};

// A song of the library.
struct Song {
  std::string slug;  // the name of its folder
  std::string title;
  std::string artist;
  std::string album;
  std::string language;             // of the lyrics, BCP 47
  std::string translationLanguage;  // BCP 47
  double length = 0;                // seconds
  std::vector<SongLine> lines;      // in order of time, at least one
};

// Puts a song together from the texts of its two files, "lyrics.lrc" (tags ti, ar, al, la and
// length, all required) and "translation.lrc" (tag la, required; each of its times must be one of
// the lyrics'). They are read as the companion reads such files, but nothing is overlooked: what it
// would warn of is an error. `folder` stands before the file names in errors, its last part is the
// slug.
std::variant<Song, SongError> parseSong(const std::filesystem::path& folder,
                                        std::string_view lyrics, std::string_view translation);

// Every song under `folder`, a folder each, in the order of the folders' names. The first error
// ends the reading; a folder without songs is an error too.
std::variant<std::vector<Song>, SongError> loadSongs(const std::filesystem::path& folder);

// The line that is sung at `position` seconds; nothing before the first.
std::optional<std::size_t> lineAt(const Song& song, double position);

// The song meant by `wanted`: its number from 1, its title or its slug, exactly as they stand.
std::optional<std::size_t> findSong(const std::vector<Song>& songs, std::string_view wanted);

}  // namespace vellora::demo
