#pragma once

#include <algorithm>
#include <chrono>

namespace vellora {

// A moment on the steady clock by which something must be over.
class Deadline {
 public:
  using Clock = std::chrono::steady_clock;

  explicit Deadline(std::chrono::milliseconds span) : end_(Clock::now() + span) {}

  // Rounded up, so that a wait for it does not end before the deadline; 0 when it has passed.
  int remainingMilliseconds() const {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end_ - Clock::now());
    return static_cast<int>(std::max<std::chrono::milliseconds::rep>(left.count(), 0));
  }
  bool passed() const { return Clock::now() >= end_; }

 private:
  Clock::time_point end_;
};

}  // namespace vellora
