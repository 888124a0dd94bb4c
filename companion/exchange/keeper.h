#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "companion/exchange/caption_settings.h"
#include "companion/exchange/lyrics_source.h"
#include "companion/exchange/renewal.h"
#include "companion/library/library.h"
#include "companion/song/song_addition.h"
#include "exchange/records/records.h"

namespace vellora::companion {

// The song that plays, with its lines and what they were read from.
struct PlayingSong {
  LibrarySong from;  // without files where the lyrics come from elsewhere
  Song song;
  OverlayLines lines;    // as the snapshot carries them
  bool addedTo = false;  // what adds to its lines has begun
  // Where the lyrics come from that the folder lacks, for people: "lrclib.net". Else empty.
  std::string source{};
};

// What the companion does, without its files and its clock: it keeps the request to be told what
// plays alive, looks for the song that plays, and keeps the snapshot of its lines fresh. One
// thread.
class Keeper {
 public:
  // Seconds between two renewals, well inside the ages up to which the overlay takes the records,
  // and between two looks at whether a file of lyrics has changed.
  static constexpr double syncInterval = 5, snapshotInterval = 1.5, filesInterval = 2;
  // Between two steps while something may come any moment, or while it may not.
  static constexpr double stepInterval = 0.1, idleInterval = 0.5;
  // Between two searches for the song while the library is still being looked at.
  static constexpr double searchInterval = 0.5;

  struct Step {
    std::optional<SyncRequest> sync;
    std::optional<OverlaySnapshot> snapshot;
    bool songChanged = false;  // another track, or other lines
  };

  Keeper(Library library, CaptionSettings settings);

  // Asks `elsewhere` for the lyrics of songs that the library lacks.
  void askElsewhere(std::unique_ptr<LyricsSource> elsewhere) { elsewhere_ = std::move(elsewhere); }
  // Null where nobody is asked.
  const LyricsSource* elsewhere() const { return elsewhere_.get(); }

  // Who tells what plays. What a player tells itself goes into no snapshot: an overlay that runs
  // beside shows another player's window, or none.
  enum class TellingOne { overlay, player };

  // To be called when something has happened, and after `pause`. `now`: wall-clock seconds since
  // 1970; `told`: what stands in the now-playing file, or what a player says.
  Step step(double now, const std::optional<NowPlayingTrack>& told,
            TellingOne by = TellingOne::overlay);

  // The track that plays; nothing while none is published that is usable.
  const std::optional<NowPlayingTrack>& track() const { return track_; }
  // Its song; null where there are no lyrics of it, or none so far.
  const PlayingSong* playing() const { return playing_.get(); }

  const CaptionSettings& settings() const { return settings_; }
  // The next step writes a snapshot with these.
  void setSettings(CaptionSettings settings);

  // Other lyrics, or another translation, of the song that plays: the next one, or the one before
  // where `by` is -1, round and round. The library's songs that may be that one follow each other,
  // then who is asked elsewhere; the languages of the song's translations, then the original alone.
  // Kept for the song as long as this lives. What was chosen, or why nothing was, for people. The
  // next step has it.
  std::string chooseLyrics(int by);
  std::string chooseTranslation(int by);
  // The language that was chosen last; nothing where none was.
  const std::optional<std::string>& chosenLanguage() const { return chosenLanguage_; }

  const Library& library() const { return library_; }
  // There is something to do, so that the next step shall not be waited for.
  bool busy() const { return library_.looking(); }
  // Seconds after a step at `now` within which the next one is due, whatever happens meanwhile.
  double pause(double now) const;

  // From the next song on, this adds to the lines.
  void add(std::unique_ptr<SongAddition> addition);
  // What those have to tell; empty where nothing.
  std::string notice() const;

 private:
  // What the user has chosen of a song.
  struct Choice {
    std::optional<std::filesystem::path> lyrics;  // empty: from elsewhere
    std::optional<std::string> language;
    bool original = false;
  };
  // Of the track that plays.
  Choice choice() const;
  void choose(Choice choice);
  bool choosesElsewhere() const;
  std::optional<std::size_t> find() const;

  bool lookForChanges(double now);
  void lookForSong(bool& changed);
  bool stepAdditions(double now);
  bool takeFromElsewhere(double now);
  WantedSong wantedSong() const;
  OverlaySnapshot snapshot(double now) const;

  Library library_;
  CaptionSettings settings_;
  std::optional<NowPlayingTrack> track_;
  TellingOne by_ = TellingOne::overlay;
  std::unique_ptr<PlayingSong> playing_;
  std::vector<std::unique_ptr<SongAddition>> additions_;
  bool adding_ = false;  // something was begun that is to be dropped
  std::unique_ptr<LyricsSource> elsewhere_;
  std::optional<WantedSong> wanted_;  // from it, once the track was looked up
  std::uint64_t version_ = 0;
  Renewal sync_{syncInterval};
  Renewal snapshot_{snapshotInterval};
  Renewal files_{filesInterval};
  Renewal search_{searchInterval};
  std::map<std::pair<std::string, std::string>, Choice> choices_;  // by title and artist
  std::optional<std::string> chosenLanguage_;
  bool unsearched_ = false;  // the library has changed since the song was looked for
};

}  // namespace vellora::companion
