#pragma once

#include <cstdint>
#include <map>

namespace vellora {

// Decides whether the panel goes back above a window that came above it. A window that the user or
// the window manager raises now and then is always answered; one that puts itself back each time
// (a screen locker, another overlay) is given way to after a few rounds, so that two windows never
// chase each other without end. Not tied to a thread.
class StackingGuard {
 public:
  // Rounds within `contestSpan` seconds of each other that make a contest.
  static constexpr int roundsBeforeYielding = 3;
  static constexpr double contestSpan = 1.0;

  // `window` stands above the panel at `now` (seconds of a clock that never goes back); whether to
  // raise the panel over it.
  bool answers(std::uint32_t window, double now);

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
