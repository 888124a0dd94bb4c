#include "companion/program/keeping.h"

#include <iostream>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <utility>

#include "companion/exchange/folder.h"
#include "companion/exchange/folder_lock.h"
#include "companion/exchange/renewal.h"
#include "companion/library/lyric_shift.h"
#include "companion/program/additions.h"
#include "companion/program/interruption.h"
#include "companion/program/online.h"
#include "companion/program/overlay_start.h"
#include "companion/program/remote.h"
#include "companion/settings/user_folders.h"
#include "companion/song/text.h"
#include "companion/view/plain_view.h"
#include "companion/view/terminal_view.h"
#include "platform/system_clock.h"

namespace vellora::companion {
namespace {

constexpr double stepInterval = 0.1;     // seconds
constexpr double seekStep = 5;           // seconds
constexpr double offsetStep = 2;         // points
constexpr double fontStep = 1;           // points
constexpr int shiftStep = 100;           // milliseconds
constexpr double overlayPatience = 1.5;  // seconds in which an overlay that runs tells what plays
constexpr double keepInterval = 2;       // seconds, between two writings of what a held key changes

// The keeper with the exchange folder's files and the clock around it.
class Keeping {
 public:
  Keeping(Keeper keeper, ExchangeFolder folder, LyricShift shift)
      : keeper_(std::move(keeper)), folder_(std::move(folder)), shift_(std::move(shift)) {}

  // While no overlay tells what plays, these are listened to.
  void listenTo(std::unique_ptr<PlayerWatch> players) { players_ = std::move(players); }

  // After the first step, so that the overlay finds a request and stays.
  void startOverlay(const Options& options) {
    overlay_.emplace(folder_, options.overlayProgram, options.programFolder);
  }

  ViewState step() {
    const double now = clock_.now();
    const auto published = folder_.nowPlaying();
    heard_ = listen(now, published);
    const Keeper::Step step = heard_ ? keeper_.step(now, heard_->track, Keeper::TellingOne::player)
                                     : keeper_.step(now, published, Keeper::TellingOne::overlay);
    remote_.step(now, published, folder_);
    bool written = true;
    if (step.sync) written = folder_.write(*step.sync);
    if (step.snapshot) written = folder_.write(*step.snapshot) && written;
    if (step.sync || step.snapshot) {
      unwritable_ = !written;
    }
    if (overlay_) overlay_->step(now);
    followShift(now);
    return state(now);
  }

  bool busy() const { return keeper_.busy(); }
  const CaptionSettings& settings() const { return keeper_.settings(); }
  bool displayIsGone() const { return overlay_ && overlay_->displayIsGone(); }

  // False when the user wants to end.
  bool grant(Wish wish) {
    using Action = MusicCommand::Action;
    CaptionSettings settings = keeper_.settings();
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
    }
    keeper_.setSettings(settings);
    return true;
  }

  // Leaves nothing behind that goes on working.
  void end() {
    OverlaySnapshot off;
    off.updatedAt = clock_.now();
    folder_.write(off);
    folder_.withdrawRequest();
    shift_.keep();
    if (overlay_) overlay_->end();
  }

 private:
  std::optional<HeardTrack> listen(double now, const std::optional<NowPlayingTrack>& published) {
    if (!players_) return std::nullopt;
    const bool tells = published && published->isUsable(now);
    if (tells || !toldAt_ || now < *toldAt_) toldAt_ = now;
    if (tells || (now - *toldAt_ < overlayPatience && !heard_)) return std::nullopt;
    auto heard = players_->look(now);
    if (!heard) return heard;
    for (std::string* text :
         {&heard->player, &heard->track.title, &heard->track.artist, &heard->track.album}) {
      text->resize(cut(*text, longestText).size());
    }
    return heard;
  }

  void shiftLyrics(int milliseconds) {
    const PlayingSong* song = keeper_.playing();
    // Lyrics without times have no line that is sung.
    if (song != nullptr && !song->song.lines.empty() && song->song.lines.front().time) {
      shift_.change(milliseconds);
    }
  }

  void followShift(double now) {
    const auto& track = keeper_.track();
    shift_.play(track ? track->title : "", track ? track->artist : "");
    if (shift_.changed() && keep_.due(now)) unkept_ = !shift_.keep();
  }

  ViewState state(double now) {
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
    if (const auto status = folder_.status()) state.overlay = status->message;
    if (keeper_.elsewhere() != nullptr) state.elsewhere = keeper_.elsewhere()->report();
    state.settings = keeper_.settings();
    state.snapshot = folder_.snapshotPath();
    state.songsInLibrary = keeper_.library().songs().size();
    state.reading = !keeper_.library().complete();
    state.notice = notice();
    return state;
  }

  std::string notice() const {
    if (unwritable_) return folder_.path().string() + " cannot be written";
    if (unkept_) return "the shift of the lyrics cannot be kept: no file can be written for it";
    if (!remote_.report().empty()) return remote_.report();
    if (std::string added = keeper_.notice(); !added.empty()) return added;
    if (overlay_ && !overlay_->report().empty()) return overlay_->report();
    for (const Problem& problem : keeper_.library().problems()) {
      if (problem.severity == Severity::error) return problem.text();
    }
    return {};
  }

  SystemClock clock_;
  Keeper keeper_;
  ExchangeFolder folder_;
  std::unique_ptr<PlayerWatch> players_;
  std::optional<HeardTrack> heard_;  // what is followed; nothing where the overlay tells
  std::optional<double> toldAt_;     // when an overlay told what plays last, or this began
  LyricShift shift_;
  Renewal keep_{keepInterval};
  bool unkept_ = false;  // since the last try
  Remote remote_;
  std::optional<OverlayStart> overlay_;
  bool unwritable_ = false;
};

// What the keys have changed, as lines for the settings' file.
void tellChanged(const Options& options, const CaptionSettings& captions) {
  Settings changed = options;
  changed.captions = captions;
  for (const Setting& setting : allSettings()) {
    const std::string value = shownSetting(setting, changed);
    if (value == shownSetting(setting, options)) continue;
    std::cerr << "to keep it, put into " << options.configFile.string() << ": " << setting.key
              << " = " << value << "\n";
  }
}

}  // namespace

int keep(const Options& options, std::unique_ptr<PlayerWatch> players) {
  std::error_code error;
  if (!std::filesystem::is_directory(options.folder, error)) {
    return fail(filesFailed, options.folder.string() + " is no folder");
  }
  ExchangeFolder folder(options.exchange);
  if (const auto reason = folder.make()) return fail(filesFailed, *reason);
  const FolderLock lock(folder.path());
  if (lock.state() == FolderLock::State::anothers) {
    return fail(folderTaken, folder.path().string() + " is fed by another companion, " +
                                 lock.reason() +
                                 "; end that, or name another folder with --exchange");
  }
  if (lock.state() == FolderLock::State::unavailable) {
    std::cerr << "no other companion can be kept from the exchange folder: " << lock.reason()
              << "\n";
  }

  // What an overlay that was ended by a signal has left; one that runs says it again.
  if (const auto left = folder.status(); left && !left->stopped) folder.withdrawStatus();

  const Interruption interruption;
  Keeper keeper(Library(options.folder, options.language), options.captions);
  addToLines(keeper, options);
  keeper.askElsewhere(lyricsFromElsewhere(options));
  const auto state = stateFolder(processEnvironment);
  Keeping keeping(std::move(keeper), folder,
                  LyricShift(state ? *state / "vellora" / "lyric-shifts" : ""));
  std::unique_ptr<View> view;
  if (!options.plain) view = makeTerminalView();
  if (view) keeping.listenTo(std::move(players));
  if (!view) view = std::make_unique<PlainView>(std::cout);
  view->show(keeping.step());
  if (options.overlay) keeping.startOverlay(options);
  bool wanted = true;
  while (wanted && !interruption.asked() && !keeping.displayIsGone()) {
    view->show(keeping.step());
    const double pause = keeping.busy() ? 0 : stepInterval;
    for (const Wish wish : view->wait(pause)) wanted = keeping.grant(wish) && wanted;
  }
  view.reset();
  tellChanged(options, keeping.settings());
  keeping.end();
  interruption.take();
  if (keeping.displayIsGone())
    return fail(noOverlay, "the display is gone, and the overlay with it");
  return allWell;
}

}  // namespace vellora::companion
