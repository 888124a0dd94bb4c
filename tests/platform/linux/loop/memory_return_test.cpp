#include "platform/linux/loop/memory_return.h"

#include <cstddef>
#include <vector>

#include <gtest/gtest.h>
#include <malloc.h>

namespace vellora {
namespace {

// The sanitizers' allocators know no such thresholds. GCC and clang tell of them differently.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define VELLORA_OTHER_ALLOCATOR
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define VELLORA_OTHER_ALLOCATOR
#endif
#endif

#ifndef VELLORA_OTHER_ALLOCATOR

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
