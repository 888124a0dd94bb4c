#include "platform/linux/loop/memory_return.h"

#include <malloc.h>

namespace vellora {

void returnLargeBlocks() {
  // The values with which the library begins; setting them keeps them.
  constexpr int bytes = 128 * 1024;
  mallopt(M_MMAP_THRESHOLD, bytes);
  mallopt(M_TRIM_THRESHOLD, bytes);
}

}  // namespace vellora
