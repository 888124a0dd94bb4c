#pragma once

#include "platform/clock.h"

namespace vellora {

// The kernel's CLOCK_REALTIME (clock_gettime(2)). Any thread.
class SystemClock final : public Clock {
 public:
  double now() const override;
};

}  // namespace vellora
