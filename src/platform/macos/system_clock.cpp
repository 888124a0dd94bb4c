#include "platform/macos/system_clock.h"

#include <ctime>

namespace vellora {

double SystemClock::now() const {
  timespec time{};
  clock_gettime(CLOCK_REALTIME, &time);  // cannot fail for this clock and a valid address
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

}  // namespace vellora
