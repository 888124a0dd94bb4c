#pragma once

#include <atomic>

#include "platform/clock.h"

namespace vellora {

// A clock that stands still until the test moves it.
class FakeClock final : public Clock {
 public:
  explicit FakeClock(double start = 1'700'000'000.0) : time_(start) {}

  double now() const override { return time_; }

  void set(double seconds) { time_ = seconds; }
  void advance(double seconds) { time_ = time_ + seconds; }

 private:
  std::atomic<double> time_;
};

}  // namespace vellora
