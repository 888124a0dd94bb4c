#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "exchange/records/records.h"
#include "library/song.h"

namespace vellora::demo {

// How the captions shall look.
struct CaptionSettings {
  double fontSize = 26;       // points, as the snapshot carries it
  double verticalOffset = 0;  // points, positive moves captions down
};

// What the feeder does, without its files and its clock: from what the overlay publishes to what
// the overlay shall read next. It keeps the sync request alive and the snapshot fresh, with the
// lines of the song that plays. One thread.
class Feeder {
 public:
  // Seconds between two renewals, well inside the ages up to which the overlay takes the records.
  static constexpr double syncInterval = 5;
  static constexpr double snapshotInterval = 1.5;

  // What is to be written now, and a line for the user where something changed.
  struct Step {
    std::optional<SyncRequest> sync;
    std::optional<OverlaySnapshot> snapshot;
    std::optional<std::string> news;
  };

  Feeder(std::vector<Song> songs, CaptionSettings settings);

  // To be called several times a second. `now` in wall-clock seconds since 1970; `published` is
  // what stands in the now-playing file, nothing when it cannot be read.
  Step step(double now, const std::optional<NowPlayingTrack>& published);

  // The song's snapshot at `now`; switched off and empty without a song.
  OverlaySnapshot snapshotOf(std::optional<std::size_t> song, double now) const;

 private:
  std::optional<std::size_t> songOf(const std::optional<NowPlayingTrack>& published,
                                    double now) const;

  std::vector<Song> songs_;
  CaptionSettings settings_;
  std::optional<std::size_t> song_;
  std::optional<double> lastSync_;
  std::optional<double> lastSnapshot_;
};

}  // namespace vellora::demo
