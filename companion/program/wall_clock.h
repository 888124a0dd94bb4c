#pragma once

#include <chrono>

#include "platform/clock.h"

namespace vellora::companion {

// The system's clock.
class WallClock final : public Clock {
 public:
  double now() const override {
    return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch())
        .count();
  }
};

}  // namespace vellora::companion
