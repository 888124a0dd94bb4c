#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "companion/exchange/folder.h"
#include "companion/exchange/lyrics_source.h"

namespace vellora::companion {

// What a service said of a song.
struct KeptLyrics {
  std::string lyrics;  // LRC or plain text; empty where the service has none
  bool instrumental = false;
  double fetchedAt = 0;  // seconds since 1970

  bool operator==(const KeptLyrics&) const = default;
};

// Where a service's answers are kept: "vellora/lyrics" in $XDG_CACHE_HOME, else in ~/Library/Caches
// where that exists, else in ~/.cache (XDG Base Directory Specification). Nothing without a home.
std::optional<std::filesystem::path> defaultLyricsCache(const Environment& environment);

struct CacheLimits {
  std::size_t files = 5000;
  std::uintmax_t bytes = std::uintmax_t{32} * 1024 * 1024;
};

// The answers of services, a file for each song, in a folder for the user alone. What is damaged
// counts as missing, and what cannot be written is not kept. Where there are too many, those go
// that nothing has asked for in the longest time. One thread.
class LyricsCache {
 public:
  // Seconds for which it is remembered that a service has no lyrics of a song.
  static constexpr double patience = 7.0 * 24 * 3600;

  // `folder`: made when something is first kept; where it is empty, nothing is.
  // `server`: whose answers these are.
  LyricsCache(std::filesystem::path folder, std::string server, CacheLimits limits = {});

  // What was said of the song; songs are the same whose titles and artists are but for their
  // spelling, with the same whole seconds. Nothing where that is unknown, or said too long ago that
  // there are none.
  std::optional<KeptLyrics> find(const WantedSong& song, double now) const;

  void keep(const WantedSong& song, const KeptLyrics& lyrics) const;

 private:
  void makeRoom() const;

  std::filesystem::path folder_;
  std::string server_;
  CacheLimits limits_;
};

}  // namespace vellora::companion
