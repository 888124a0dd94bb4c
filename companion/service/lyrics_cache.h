#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "companion/cache/cache_folder.h"
#include "companion/exchange/lyrics_source.h"

namespace vellora::companion {

// What a service said of a song.
struct KeptLyrics {
  std::string lyrics;  // LRC or plain text; empty where the service has none
  bool instrumental = false;
  double fetchedAt = 0;  // seconds since 1970

  bool operator==(const KeptLyrics&) const = default;
};

// The answers of services, a file for each song (see CacheFolder). What is damaged counts as
// missing. One thread.
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
  CacheFolder files_;
  std::string server_;
};

}  // namespace vellora::companion
