#pragma once

#include <chrono>

#include "platform/clock.h"

namespace vellora {

// The system's own wall clock, which C++ counts from 1970 everywhere. Any thread.
class SystemClock final : public Clock {
 public:
  double now() const override {
    return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch())
        .count();
  }
};

}  // namespace vellora
