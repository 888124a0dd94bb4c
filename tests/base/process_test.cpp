#include "base/process.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vellora {
namespace {

TEST(ProcessTest, IsThereUntilItHasEndedAndWasWaitedFor) {
  EXPECT_FALSE(isProcessGone(::getpid()));
  EXPECT_FALSE(isProcessGone(1)) << "which an ordinary user may not signal";
  const pid_t child = ::fork();
  if (child == 0) ::_exit(0);
  ASSERT_GT(child, 0);
  ASSERT_EQ(::waitpid(child, nullptr, 0), child);
  EXPECT_TRUE(isProcessGone(child));
}

TEST(ProcessTest, NumbersThatAreNoProcessesAreGone) {
  EXPECT_TRUE(isProcessGone(0));
  EXPECT_TRUE(isProcessGone(-1)) << "which means all processes where signals are sent";
}

}  // namespace
}  // namespace vellora
