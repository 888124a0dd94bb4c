#pragma once

#include <memory>
#include <optional>
#include <string>

#include "companion/exchange/folder.h"
#include "companion/exchange/keeper.h"
#include "companion/exchange/renewal.h"
#include "companion/exchange/status_watch.h"
#include "companion/library/lyric_shift.h"
#include "companion/program/options.h"
#include "companion/program/overlay_start.h"
#include "companion/program/remote.h"
#include "companion/view/view_state.h"
#include "platform/clock.h"
#include "platform/player_watch.h"

namespace vellora::companion {

// The keeper with the exchange folder's files and the clock around it. Main thread.
class Feeding {
 public:
  // Seconds in which an overlay that runs tells what plays.
  static constexpr double overlayPatience = 1.5;
  // Between two writings of what a held key changes.
  static constexpr double keepInterval = 2;

  // `clock` outlives this.
  Feeding(const Clock& clock, Keeper keeper, ExchangeFolder folder, LyricShift shift);

  // While no overlay tells what plays, these are listened to; null: none.
  void listenTo(std::unique_ptr<PlayerWatch> players) { players_ = std::move(players); }

  // After the first step, so that the overlay finds a request and stays.
  void startOverlay(const Options& options);

  // To be called when a file in the folder has changed, something was asked for, or `pause` is
  // over.
  ViewState step();
  // Seconds until the next step, where nothing happens before.
  double pause() const;

  // Does what the user wants; false where that is to end.
  bool grant(Wish wish);

  const CaptionSettings& settings() const { return keeper_.settings(); }
  const std::optional<std::string>& chosenLanguage() const { return keeper_.chosenLanguage(); }
  bool displayIsGone() const { return overlay_ && overlay_->displayIsGone(); }

  // Leaves nothing behind that goes on working.
  void end();

 private:
  std::optional<HeardTrack> listen(double now, const std::optional<NowPlayingTrack>& published);
  void shiftLyrics(int milliseconds);
  void followShift(double now);
  ViewState state(double now);
  std::string notice() const;

  const Clock& clock_;
  Keeper keeper_;
  ExchangeFolder folder_;
  std::unique_ptr<PlayerWatch> players_;
  std::optional<HeardTrack> heard_;  // what is followed; nothing where the overlay tells
  bool listens_ = false;             // to the players, since the last step
  std::optional<double> toldAt_;     // when an overlay told what plays last, or this began
  LyricShift shift_;
  Renewal keep_{keepInterval};
  bool unkept_ = false;  // since the last try
  StatusWatch statuses_;
  std::string status_;  // the overlay's line; empty where none runs
  Remote remote_;
  std::optional<OverlayStart> overlay_;
  std::string chosen_;  // what became of a choice, while that was the last key
  std::optional<NowPlayingTrack> chosenFor_;
  bool unwritable_ = false;
};

}  // namespace vellora::companion
