#include "companion/program/remote.h"

namespace vellora::companion {

void Remote::send(MusicCommand::Action action, SeekTarget target) {
  if (waiting_.size() == mostWaiting) return;
  waiting_.push_back({action, target});
}

void Remote::step(double now, const std::optional<NowPlayingTrack>& published,
                  const ExchangeFolder& folder) {
  if (!current_ && !waiting_.empty()) {
    const auto usable = published && published->isUsable(now) ? published : std::nullopt;
    const Waiting next = waiting_.front();
    waiting_.pop_front();
    current_.emplace(MusicCommand(0, next.action, ""), next.target, patience, usable);
  }
  if (!current_) return;
  const auto step = current_->step(now, published, folder.commandWaits());
  // A command that cannot be written is not taken either, and reported as such.
  if (step.command) folder.write(*step.command);
  if (step.withdraw) folder.withdrawCommand();
  report_ = current_->report();
  if (step.outcome != CommandWatch::Outcome::waiting) current_.reset();
}

}  // namespace vellora::companion
