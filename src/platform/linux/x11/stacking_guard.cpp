#include "platform/linux/x11/stacking_guard.h"

namespace vellora {

bool StackingGuard::answers(std::uint32_t window, double now) {
  Rounds& rounds = rounds_[window];
  const bool soon = rounds.count > 0 && now - rounds.last <= contestSpan;
  rounds.count = soon ? rounds.count + 1 : 1;
  rounds.last = now;
  return rounds.count <= roundsBeforeYielding;
}

bool StackingGuard::givesWayTo(std::uint32_t window, double now) const {
  const auto found = rounds_.find(window);
  return found != rounds_.end() && found->second.count > roundsBeforeYielding &&
         now - found->second.last <= contestSpan;
}

void StackingGuard::noteMoved(std::uint32_t window, double now) {
  if (givesWayTo(window, now)) rounds_[window].last = now;
}

void StackingGuard::forget(std::uint32_t window) { rounds_.erase(window); }

void StackingGuard::reset() { rounds_.clear(); }

}  // namespace vellora
