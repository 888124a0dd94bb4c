#pragma once

#include <chrono>

#include <systemd/sd-bus.h>

namespace vellora {

// Waits until one of the two has something to process, or that moment has come. The second may be
// null. False when the first is lost; what has become of the second, its processing tells.
bool waitForEither(sd_bus* first, sd_bus* second, std::chrono::steady_clock::time_point until);

}  // namespace vellora
