#include "companion/program/feeding.h"

#include <algorithm>
#include <utility>

#include "companion/song/text.h"

namespace vellora::companion {
namespace {

constexpr double seekStep = 5;    // seconds
constexpr double offsetStep = 2;  // points
constexpr double fontStep = 1;    // points
constexpr int shiftStep = 100;    // milliseconds

}  // namespace

Feeding::Feeding(const Clock& clock, Keeper keeper, ExchangeFolder folder, LyricShift shift)
    : clock_(clock),
      keeper_(std::move(keeper)),
      folder_(std::move(folder)),
      shift_(std::move(shift)) {}

void Feeding::startOverlay(const Options& options) {
  overlay_.emplace(folder_, options.overlayProgram, options.programFolder);
}

double Feeding::pause() const {
  const double now = clock_.now();
  double pause = keeper_.pause(now);
  if (pause <= 0) return 0;
  if (remote_.underWay()) pause = std::min(pause, Keeper::stepInterval);
  if (listens_) pause = std::min(pause, players_->pause(now));
  if (players_ && !listens_ && toldAt_) {
    const double patience = *toldAt_ + overlayPatience - now;
    if (patience > 0) pause = std::min(pause, patience);
  }
  return std::max(pause, shortestWait);
}

ViewState Feeding::step() {
  const double now = clock_.now();
  const auto published = folder_.nowPlaying();
  heard_ = listen(now, published);
  const Keeper::Step step = heard_ ? keeper_.step(now, heard_->track, Keeper::TellingOne::player)
                                   : keeper_.step(now, published, Keeper::TellingOne::overlay);
  const auto& track = keeper_.track();
  if (!track || (chosenFor_ && !sameTrack(*track, *chosenFor_))) chosen_.clear();
  remote_.step(now, published, folder_);
  bool written = true;
  if (step.sync) written = folder_.write(*step.sync);
  if (step.snapshot) written = folder_.write(*step.snapshot) && written;
  if (step.sync || step.snapshot) {
    unwritable_ = !written;
  }
  if (overlay_) overlay_->step(now);
  StatusWatch::Step status = statuses_.step(now, folder_.status(), published);
  if (status.withdraw) folder_.withdrawStatus();
  status_ = std::move(status.shown);
  followShift(now);
  return state(now);
}

bool Feeding::grant(Wish wish) {
  using Action = MusicCommand::Action;
  CaptionSettings settings = keeper_.settings();
  chosen_.clear();
  chosenFor_ = keeper_.track();
  switch (wish) {
    case Wish::quit:
      return false;
    case Wish::playPause:
      remote_.send(Action::playPause);
      return true;
    case Wish::next:
      remote_.send(Action::next);
      return true;
    case Wish::previous:
      remote_.send(Action::previous);
      return true;
    case Wish::back:
      remote_.send(Action::seek, {-seekStep, true});
      return true;
    case Wish::forward:
      remote_.send(Action::seek, {seekStep, true});
      return true;
    case Wish::captionsUp:
      settings.changeOffset(-offsetStep);
      break;
    case Wish::captionsDown:
      settings.changeOffset(offsetStep);
      break;
    case Wish::larger:
      settings.changeFontSize(fontStep);
      break;
    case Wish::smaller:
      settings.changeFontSize(-fontStep);
      break;
    case Wish::toggle:
      settings.shown = !settings.shown;
      break;
    case Wish::lyricsEarlier:
      shiftLyrics(-shiftStep);
      return true;
    case Wish::lyricsLater:
      shiftLyrics(shiftStep);
      return true;
    case Wish::nextLyrics:
      chosen_ = keeper_.chooseLyrics(1);
      return true;
    case Wish::previousLyrics:
      chosen_ = keeper_.chooseLyrics(-1);
      return true;
    case Wish::nextTranslation:
      chosen_ = keeper_.chooseTranslation(1);
      return true;
    case Wish::previousTranslation:
      chosen_ = keeper_.chooseTranslation(-1);
      return true;
  }
  keeper_.setSettings(settings);
  return true;
}

void Feeding::end() {
  OverlaySnapshot off;
  off.updatedAt = clock_.now();
  folder_.write(off);
  folder_.withdrawRequest();
  shift_.keep();
  if (overlay_) overlay_->end();
}

std::optional<HeardTrack> Feeding::listen(double now,
                                          const std::optional<NowPlayingTrack>& published) {
  listens_ = false;
  if (!players_) return std::nullopt;
  const bool tells = published && published->isUsable(now);
  if (tells || !toldAt_ || now < *toldAt_) toldAt_ = now;
  listens_ = !tells && (now - *toldAt_ >= overlayPatience || heard_);
  if (!listens_) return std::nullopt;
  auto heard = players_->look(now);
  if (!heard) return heard;
  for (std::string* text :
       {&heard->player, &heard->track.title, &heard->track.artist, &heard->track.album}) {
    text->resize(cut(*text, longestText).size());
  }
  return heard;
}

void Feeding::shiftLyrics(int milliseconds) {
  const PlayingSong* song = keeper_.playing();
  // Lyrics without times have no line that is sung.
  if (song != nullptr && !song->song.lines.empty() && song->song.lines.front().time) {
    shift_.change(milliseconds);
  }
}

void Feeding::followShift(double now) {
  const auto& track = keeper_.track();
  shift_.play(track ? track->title : "", track ? track->artist : "");
  if (shift_.changed() && keep_.due(now)) unkept_ = !shift_.keep();
}

ViewState Feeding::state(double now) {
  ViewState state;
  state.track = keeper_.track();
  if (state.track) state.position = state.track->playbackTime(now).value_or(0);
  state.song = keeper_.playing();
  if (state.song != nullptr) {
    state.shift = shift_.milliseconds();
    state.line = state.song->song.lineAt(state.position - state.shift / 1000.0);
  }
  if (heard_) state.player = heard_->player;
  state.hearsPlayers = players_ != nullptr;
  state.overlay = status_;
  if (keeper_.elsewhere() != nullptr) state.elsewhere = keeper_.elsewhere()->report();
  state.settings = keeper_.settings();
  state.snapshot = folder_.snapshotPath();
  state.songsInLibrary = keeper_.library().songs().size();
  state.reading = !keeper_.library().complete();
  state.notice = notice();
  return state;
}

std::string Feeding::notice() const {
  if (unwritable_) return folder_.path().string() + " cannot be written";
  if (unkept_) return "the shift of the lyrics cannot be kept: no file can be written for it";
  if (!chosen_.empty()) return chosen_;
  if (!remote_.report().empty()) return remote_.report();
  if (std::string added = keeper_.notice(); !added.empty()) return added;
  if (overlay_ && !overlay_->report().empty()) return overlay_->report();
  for (const Problem& problem : keeper_.library().problems()) {
    if (problem.severity == Severity::error) return problem.text();
  }
  return {};
}

}  // namespace vellora::companion
