#include "base/standard_streams.h"

#include <fcntl.h>
#include <unistd.h>

namespace vellora {

void openMissingStandardStreams() {
  int opened = 0;
  while (opened >= 0 && opened <= STDERR_FILENO) opened = ::open("/dev/null", O_RDWR);
  if (opened > STDERR_FILENO) ::close(opened);
}

}  // namespace vellora
