#include "platform/linux/loop/memory_return.h"

#include <cstddef>
#include <vector>

#include <gtest/gtest.h>
#include <malloc.h>

namespace vellora {
namespace {

// The sanitizers' allocators know no such thresholds.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)

TEST(MemoryReturn, ALargeBlockGoesBackHoweverOftenOneWasFreed) {
  constexpr std::size_t bytes = 400 * 1024;
  returnLargeBlocks();
  const std::size_t before = mallinfo2().hblks;
  for (int i = 0; i < 5; ++i) {
    const std::vector<char> block(bytes);
    EXPECT_EQ(mallinfo2().hblks, before + 1) << "not mapped by itself, time " << i;
  }
  EXPECT_EQ(mallinfo2().hblks, before);
}

#endif

}  // namespace
}  // namespace vellora
