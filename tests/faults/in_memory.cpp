#include <cstdlib>
#include <filesystem>

#include <gtest/gtest.h>

namespace vellora::faults {
namespace {

// The tests' folders lie in memory where the system offers that: some file systems write a file out
// when another is renamed over it, and thousands of runs would wait for the disk.
class InMemory final : public testing::Environment {
 public:
  void SetUp() override {
    if (std::filesystem::is_directory("/dev/shm")) ::setenv("TMPDIR", "/dev/shm", 1);
  }
};

const testing::Environment* const inMemory = testing::AddGlobalTestEnvironment(new InMemory);

}  // namespace
}  // namespace vellora::faults
