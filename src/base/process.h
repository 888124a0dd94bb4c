#pragma once

#include <cstdint>

namespace vellora {

// Whether there is no process of this number on the host; a number that is not positive is none's.
// One that may not be asked is there. Any thread.
bool isProcessGone(std::int32_t process);

}  // namespace vellora
