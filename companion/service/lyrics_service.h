#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "companion/exchange/lyrics_source.h"
#include "companion/service/fetch.h"
#include "companion/service/lrclib.h"
#include "companion/service/lyrics_cache.h"
#include "companion/service/rest.h"
#include "companion/service/server_address.h"

namespace vellora::companion {

// Lyrics from a service with LRCLIB's interface, and from what it said before. Asks for a song by
// title, artist, album and duration, and searches for it where that brings no synced lyrics. A
// server that fails is left alone for growing spans, for all songs. One thread; nothing waits.
class LyricsService final : public LyricsSource {
 public:
  // Seconds that a song stays before the server is asked, so that who skips through songs does not
  // ask for each.
  static constexpr double settling = 0.4;

  LyricsService(ServerAddress server, LyricsCache cache, std::unique_ptr<Fetch> fetch);

  void want(const std::optional<WantedSong>& song) override;
  std::optional<FoundLyrics> step(double now) override;
  bool underWay(double now) const override;
  std::string report() const override;

 private:
  enum class State { nothingToDo, begun, waiting, getting, searching };

  std::optional<FoundLyrics> begin(double now);
  std::optional<FoundLyrics> takeGotten(Fetched fetched, double now);
  std::optional<FoundLyrics> takeSearched(Fetched fetched, double now);
  std::optional<FoundLyrics> conclude(const LyricsRecord* best, double now);
  std::optional<FoundLyrics> tell(const KeptLyrics& answer);
  std::optional<FoundLyrics> goOnWithout(const Fetched& searched, double now);
  std::nullopt_t fail(const Fetched& fetched, double now);

  ServerAddress server_;
  LyricsCache cache_;
  std::unique_ptr<Fetch> fetch_;
  Rest rest_;
  std::optional<WantedSong> wanted_;
  bool introduced_ = false;  // a song was wanted
  State state_ = State::nothingToDo;
  double since_ = 0;                    // when the song was wanted
  std::optional<LyricsRecord> gotten_;  // what the first request brought, if not synced lyrics
  std::string outcome_;                 // of the song that is wanted
  std::string failure_;                 // of the server, as long as it fails
};

// Over the network, under the program's name and version. `cache`: where answers are kept; nothing
// is where it is empty.
std::unique_ptr<LyricsSource> makeLyricsService(const ServerAddress& server,
                                                const std::filesystem::path& cache);

}  // namespace vellora::companion
