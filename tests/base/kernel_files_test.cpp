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

// A page at a time, however much is asked for; the stack stands near the end.
TEST(KernelFilesTest, FileThatIsHandedOutInPiecesIsReadToItsEnd) {
  const std::optional<std::string> maps = readWholeFile("/proc/self/maps");
  ASSERT_TRUE(maps);
  EXPECT_GT(maps->size(), 4096u);
  EXPECT_NE(maps->find("[stack]"), std::string::npos);
}

}  // namespace
}  // namespace vellora
