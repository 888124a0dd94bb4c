#pragma once

#include <cstdint>
#include <map>

namespace vellora {

// Decides whether the panel goes back to its place when a window has come between. A window that
// the user or the window manager restacks now and then is always answered; one that puts itself
// back each time (another overlay) is given way to after a few rounds, until it has rested for a
// while, so that two windows never chase each other without end. All moments are seconds of a clock
// that never goes back. Not tied to a thread.
class StackingGuard {
 public:
  // Rounds within `contestSpan` seconds of each other that make a contest, and how long the window
  // must rest for that to be forgiven.
  static constexpr int roundsBeforeYielding = 3;
  static constexpr double contestSpan = 1.0;

  // `window` lies on the wrong side of the panel at `now`; whether to move the panel past it.
  bool answers(std::uint32_t window, double now);
  // Whether `answers` has said no to it, and it has not rested since.
  bool givesWayTo(std::uint32_t window, double now) const;

  // The window was moved at `now`, by whomever.
  void noteMoved(std::uint32_t window, double now);
  // The window went away or was hidden; its number may come back as another's.
  void forget(std::uint32_t window);
  void reset();

 private:
  struct Rounds {
    int count = 0;
    double last = 0;
  };
  std::map<std::uint32_t, Rounds> rounds_;
};

}  // namespace vellora
