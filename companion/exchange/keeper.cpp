#include "companion/exchange/keeper.h"

#include <algorithm>
#include <utility>

#include "companion/exchange/command_watch.h"

namespace vellora::companion {

void CaptionSettings::changeFontSize(double points) {
  fontSize = std::clamp(fontSize + points, smallestFont, largestFont);
}

void CaptionSettings::changeOffset(double points) {
  verticalOffset = std::clamp(verticalOffset + points, -farthestOffset, farthestOffset);
}

Keeper::Keeper(Library library, CaptionSettings settings)
    : library_(std::move(library)), settings_(settings) {}

void Keeper::setSettings(CaptionSettings settings) {
  settings_ = settings;
  snapshot_.hasten();
}

Keeper::Step Keeper::step(double now, const std::optional<NowPlayingTrack>& published) {
  Step step;
  if (sync_.due(now)) step.sync = SyncRequest{now};
  const auto usable = published && published->isUsable(now) ? published : std::nullopt;
  step.songChanged = usable && track_ ? !sameTrack(*usable, *track_) : usable || track_;
  track_ = usable;
  if (step.songChanged) {
    lookForSong();
    files_.hasten();
    files_.due(now);
  } else {
    lookForChanges(now, step.songChanged);
  }
  if (step.songChanged) snapshot_.hasten();
  if (snapshot_.due(now)) step.snapshot = snapshot(now);
  return step;
}

void Keeper::lookForSong() {
  playing_.reset();
  version_ = 0;
  if (!track_) return;
  library_.refresh();
  const auto found = library_.find(track_->title, track_->artist);
  if (!found) return;
  const LibrarySong& from = library_.songs()[*found];
  version_ = Library::version(from.files);
  playing_ = std::make_unique<PlayingSong>(PlayingSong{from, library_.load(from), {}});
  playing_->lines = playing_->song.overlayLines();
}

// A song that is being written, or one that comes into the folder while it plays.
void Keeper::lookForChanges(double now, bool& changed) {
  if (!track_ || !files_.due(now)) return;
  if (playing_ && Library::version(playing_->from.files) == version_) return;
  const bool had = playing_ != nullptr;
  lookForSong();
  changed = had || playing_ != nullptr;
}

OverlaySnapshot Keeper::snapshot(double now) const {
  OverlaySnapshot result;
  result.updatedAt = now;
  result.fontSize = settings_.fontSize;
  result.verticalOffset = settings_.verticalOffset;
  if (!playing_ || !track_) return result;
  result.enabled = settings_.shown;
  // As the player names the song, not as the files do: the overlay compares it with the window.
  result.musicTitle = track_->title;
  result.musicArtist = track_->artist;
  result.lines = playing_->lines;
  return result;
}

}  // namespace vellora::companion
