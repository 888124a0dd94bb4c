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
  const bool another = usable && track_ ? !sameTrack(*usable, *track_) : usable || track_;
  track_ = usable;
  if (another) {
    playing_.reset();
    library_.beginLook();
    files_.hasten();
    search_.hasten();
  }
  const bool news = lookForChanges(now);
  if (another || news) lookForSong(step.songChanged);
  if (another) step.songChanged = true;
  if (step.songChanged) snapshot_.hasten();
  if (snapshot_.due(now)) step.snapshot = snapshot(now);
  return step;
}

// Whether there may be another song for the track: one that is being written, or one that comes
// into the folder while it plays.
bool Keeper::lookForChanges(double now) {
  const bool due = track_ && files_.due(now);
  const bool written = due && playing_ && Library::version(playing_->from.files) != version_;
  if (written) library_.beginLook();
  if (library_.looking()) {
    unsearched_ = library_.look(now) || unsearched_;
  } else if (due && !playing_) {
    unsearched_ = library_.lookIdly(now) || unsearched_;
  }
  // As long as a look goes on, there may be a better one in a moment.
  if (!written && (!unsearched_ || (library_.looking() && !search_.due(now)))) return false;
  unsearched_ = false;
  return true;
}

void Keeper::lookForSong(bool& changed) {
  const auto found = track_ ? library_.find(track_->title, track_->artist) : std::nullopt;
  if (!found) {
    changed = playing_ != nullptr;
    playing_.reset();
    return;
  }
  const LibrarySong& from = library_.songs()[*found];
  const std::uint64_t version = Library::version(from.files);
  if (playing_ && playing_->from.files == from.files && version == version_) return;
  version_ = version;
  playing_ = std::make_unique<PlayingSong>(PlayingSong{from, library_.load(from), {}});
  playing_->lines = playing_->song.overlayLines();
  changed = true;
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
