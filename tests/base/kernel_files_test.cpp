#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "base/files.h"

namespace vellora {
namespace {

// The kernel's own files say that they are empty.
TEST(KernelFilesTest, FileWhoseSizeIsNotKnownBeforehandIsRead) {
  const std::optional<std::string> status = readWholeFile("/proc/self/status");
  ASSERT_TRUE(status);
  EXPECT_NE(status->find("Name:"), std::string::npos);
}

}  // namespace
}  // namespace vellora
