#include "companion/exchange/keeper.h"

#include <algorithm>
#include <utility>

#include "companion/exchange/command_watch.h"

namespace vellora::companion {

Keeper::Keeper(Library library, CaptionSettings settings)
    : library_(std::move(library)), settings_(settings) {}

void Keeper::setSettings(CaptionSettings settings) {
  settings_ = settings;
  snapshot_.hasten();
}

Keeper::Step Keeper::step(double now, const std::optional<NowPlayingTrack>& told, TellingOne by) {
  Step step;
  if (sync_.due(now)) step.sync = SyncRequest{now};
  const auto usable = told && told->isUsable(now) ? told : std::nullopt;
  const bool another = usable && track_ ? !sameTrack(*usable, *track_) : usable || track_;
  track_ = usable;
  if (std::exchange(by_, by) != by) snapshot_.hasten();
  if (another) {
    playing_.reset();
    wanted_.reset();
    if (elsewhere_) elsewhere_->want(std::nullopt);
    library_.beginLook();
    files_.hasten();
    search_.hasten();
  }
  const bool news = lookForChanges(now);
  if (another || news) lookForSong(step.songChanged);
  const bool came = elsewhere_ && takeFromElsewhere(now);
  if (another || came) step.songChanged = true;
  if (stepAdditions(now) || step.songChanged) snapshot_.hasten();
  if (snapshot_.due(now)) step.snapshot = snapshot(now);
  return step;
}

double Keeper::pause(double now) const {
  if (busy()) return 0;
  const bool coming =
      (elsewhere_ && elsewhere_->underWay(now)) ||
      std::ranges::any_of(additions_, [](const auto& addition) { return addition->underWay(); });
  double pause = coming ? stepInterval : idleInterval;
  pause = std::min({pause, sync_.left(now), snapshot_.left(now)});
  return track_ ? std::min(pause, files_.left(now)) : pause;
}

void Keeper::add(std::unique_ptr<SongAddition> addition) {
  additions_.push_back(std::move(addition));
}

std::string Keeper::notice() const {
  std::string all;
  for (const auto& addition : additions_) {
    const std::string notice = addition->notice();
    if (!notice.empty()) all.append(all.empty() ? "" : "; ").append(notice);
  }
  return all;
}

// Whether any line may have got something.
bool Keeper::stepAdditions(double now) {
  if (additions_.empty()) return false;
  if (!playing_) {
    if (std::exchange(adding_, false)) {
      for (const auto& addition : additions_) addition->drop();
    }
    return false;
  }
  adding_ = true;
  const bool isNew = !std::exchange(playing_->addedTo, true);
  bool any = isNew;
  for (const auto& addition : additions_) {
    if (isNew) addition->begin(playing_->song);
    any = addition->step(now, playing_->song) || any;
  }
  if (any) playing_->lines = playing_->song.overlayLines(settings_.reading);
  return any;
}

// Whether there may be another song for the track: one that is being written, or one that comes
// into the folder while it plays.
bool Keeper::lookForChanges(double now) {
  const bool due = track_ && files_.due(now);
  const bool own = playing_ && playing_->source.empty();
  const bool written = due && own && Library::version(playing_->from.files) != version_;
  if (written) library_.beginLook();
  if (library_.looking()) {
    unsearched_ = library_.look(now) || unsearched_;
  } else if (due && !own) {
    unsearched_ = library_.lookIdly(now) || unsearched_;
  }
  // As long as a look goes on, there may be a better one in a moment.
  if (!written && (!unsearched_ || (library_.looking() && !search_.due(now)))) return false;
  unsearched_ = false;
  return true;
}

void Keeper::lookForSong(bool& changed) {
  const auto found = track_ ? find() : std::nullopt;
  if (!found) {
    if (playing_ && !playing_->source.empty()) return;
    changed = playing_ != nullptr;
    playing_.reset();
    return;
  }
  const LibrarySong& from = library_.songs()[*found];
  const std::uint64_t version = Library::version(from.files);
  if (playing_ && playing_->from.files == from.files && version == version_) return;
  version_ = version;
  playing_ =
      std::make_unique<PlayingSong>(PlayingSong{from, library_.load(from, choice().language), {}});
  if (choice().original) playing_->song.leaveOriginal();
  playing_->lines = playing_->song.overlayLines();
  changed = true;
}

// Asks for what the library lacks, once that is known. Whether the song's lines have come.
bool Keeper::takeFromElsewhere(double now) {
  if (!track_ || (playing_ && playing_->source.empty())) {
    elsewhere_->want(std::nullopt);
  } else if (!library_.looking()) {
    if (!wanted_) wanted_ = wantedSong();
    elsewhere_->want(wanted_);
  }
  auto found = elsewhere_->step(now);
  if (!found || !track_) return false;
  playing_ = std::make_unique<PlayingSong>();
  playing_->from.names.title = track_->title;
  playing_->from.names.artist = track_->artist;
  playing_->song = assemble(std::move(found->lyrics), std::nullopt);
  if (choice().original) playing_->song.leaveOriginal();
  playing_->lines = playing_->song.overlayLines();
  playing_->source = std::move(found->from);
  return true;
}

// The track, with what its audio file knows beyond what the player tells.
WantedSong Keeper::wantedSong() const {
  WantedSong song{track_->title, track_->artist, track_->album, std::nullopt};
  if (auto recording = library_.recording(song.title, song.artist, song.album)) {
    if (song.album.empty()) song.album = std::move(recording->album);
    song.duration = recording->length;
  }
  return song;
}

OverlaySnapshot Keeper::snapshot(double now) const {
  OverlaySnapshot result;
  result.updatedAt = now;
  result.fontSize = settings_.fontSize;
  result.verticalOffset = settings_.verticalOffset;
  if (!playing_ || !track_ || by_ == TellingOne::player) return result;
  result.enabled = settings_.shown;
  // As the player names the song, not as the files do: the overlay compares it with the window.
  result.musicTitle = track_->title;
  result.musicArtist = track_->artist;
  result.lines = playing_->lines;
  return result;
}

}  // namespace vellora::companion
