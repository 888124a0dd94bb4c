#include "companion/exchange/command_watch.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/text.h"
#include "companion/song/text.h"
#include "companion/song/time_stamp.h"
#include "matching/normalization.h"

namespace vellora::companion {
namespace {

using Action = MusicCommand::Action;

// No song is longer, and the overlay ends the process over a position that it cannot count in
// milliseconds.
constexpr double farthest = 360'000;

constexpr double tolerance = 2;  // seconds by which a position may miss the wanted one

// As the player looks titles up: equal, or at least containing what was asked for.
bool isTitled(const NowPlayingTrack& track, const std::string& title) {
  const std::string wanted = OverlayMatching::normalized(title);
  if (wanted.empty()) return textEquals(track.title, title);
  return OverlayMatching::normalized(track.title).find(wanted) != std::string::npos;
}

}  // namespace

bool sameTrack(const NowPlayingTrack& a, const NowPlayingTrack& b) {
  return textEquals(a.title, b.title) && textEquals(a.artist, b.artist) &&
         textEquals(a.album, b.album);
}

std::string describe(const NowPlayingTrack& track, double position) {
  std::string text = track.playing ? "playing " : "paused in ";
  text.append("“").append(track.title).append("”");
  if (!track.artist.empty()) text.append(" by ").append(track.artist);
  return cleaned(text.append(" at ").append(clockText(position)));
}

CommandWatch::CommandWatch(MusicCommand command, SeekTarget target, double patience,
                           std::optional<NowPlayingTrack> known)
    : command_(std::move(command)),
      target_(target),
      patience_(patience),
      before_(std::move(known)) {}

CommandWatch::Step CommandWatch::step(double now, const std::optional<NowPlayingTrack>& published,
                                      bool waits) {
  Step step;
  if (phase_ == Phase::over) {
    step.outcome = outcome_;
    return step;
  }
  if (sync_.due(now)) step.sync = SyncRequest{now};
  if (!begin_) begin_ = now;
  if (phase_ == Phase::beforehand) {
    prepare(now, published, waits, step);
    return step;
  }
  if (phase_ == Phase::sent && !waits) {
    phase_ = Phase::taken;
    since_ = now;
  }
  if (phase_ == Phase::sent) {
    if (now - since_ < takingPatience && now >= since_) return step;
    step.withdraw = true;
    end(Outcome::notTaken, step);
    return step;
  }
  if (published && published->isUsable(now) && published->updatedAt >= command_.requestedAt) {
    after_ = published;
    if (shows(now, *after_)) {
      end(Outcome::done, step);
      return step;
    }
  }
  if (now - since_ >= patience_ || now < since_) end(Outcome::noEffect, step);
  return step;
}

void CommandWatch::prepare(double now, const std::optional<NowPlayingTrack>& published, bool waits,
                           Step& step) {
  // An older file may have been left by an overlay that is gone.
  const bool fresh = published && published->isUsable(now) && published->updatedAt > *begin_;
  if (fresh) before_ = published;
  const bool patient = now - *begin_ < firstPatience && now >= *begin_;
  if (patient && (!before_ || waits)) return;
  if (command_.action == Action::seek && target_.relative && !before_) {
    end(Outcome::notTaken, step);
    return;
  }
  send(now, step);
}

void CommandWatch::send(double now, Step& step) {
  command_.requestedAt = now;
  command_.position = target_.seconds;
  if (target_.relative) command_.position += before_->playbackTime(now).value_or(0);
  command_.position = std::clamp(command_.position, 0.0, farthest);
  phase_ = Phase::sent;
  since_ = now;
  step.command = command_;
}

bool CommandWatch::shows(double now, const NowPlayingTrack& after) const {
  const double position = after.playbackTime(now).value_or(0);
  const double wanted = command_.position + (now - command_.requestedAt);
  switch (command_.action) {
    case Action::play:
      return after.playing && isTitled(after, command_.title) &&
             (command_.position <= 0 || std::abs(position - wanted) <= tolerance + 1);
    case Action::seek:
      return after.playing && std::abs(position - wanted) <= tolerance;
    case Action::playPause:
      return !before_ || after.playing != before_->playing;
    case Action::next:
    case Action::previous:
      break;
  }
  return anotherTrackOrPlace(now, after);
}

// Another track; or the same one from its begin, where a list of one goes round or "previous" goes
// back to the begin.
bool CommandWatch::anotherTrackOrPlace(double now, const NowPlayingTrack& after) const {
  if (!before_ || !sameTrack(*before_, after)) return true;
  const double sinceSent = now - command_.requestedAt;
  const double position = after.playbackTime(now).value_or(0);
  const double undisturbed = before_->position + (before_->playing ? now - before_->updatedAt : 0);
  return position <= sinceSent + tolerance / 2 && position + tolerance / 4 < undisturbed;
}

void CommandWatch::end(Outcome outcome, Step& step) {
  phase_ = Phase::over;
  outcome_ = outcome;
  step.outcome = outcome;
}

std::string CommandWatch::report() const {
  switch (outcome_) {
    case Outcome::waiting:
      return "waiting for the overlay";
    case Outcome::done:
      return describe(*after_, after_->position);
    case Outcome::notTaken:
      return before_ ? "the overlay did not take the command; does it follow another folder?"
                     : "no overlay answers; start it with --overlay, or see \"vellora-companion "
                       "status\"";
    case Outcome::noEffect:
      break;
  }
  return explanation();
}

std::string CommandWatch::explanation() const {
  const std::string name(MusicCommand::name(command_.action));
  if (!after_) return "the overlay took \"" + name + "\", but tells of no player; is one running?";
  const std::string now = "; it is " + describe(*after_, after_->position);
  if (command_.action == Action::play) {
    return "the player has no song " + inQuotes(command_.title) +
           " in its library; it may have searched its catalogue" + now;
  }
  return "the player took no notice of \"" + name + "\"" + now;
}

}  // namespace vellora::companion
