#include "base/process.h"

#include <cerrno>

#include <signal.h>

namespace vellora {

bool isProcessGone(std::int32_t process) {
  return process <= 0 || (::kill(process, 0) != 0 && errno == ESRCH);
}

}  // namespace vellora
