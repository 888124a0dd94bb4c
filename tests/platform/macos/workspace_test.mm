#import "platform/macos/workspace.h"

#import <AppKit/AppKit.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace vellora {
namespace {

class WorkspaceTest : public ::testing::Test {
 protected:
  void SetUp() override { [NSApplication sharedApplication]; }

  const std::unique_ptr<Workspace> workspace = makeAppKitWorkspace();
};

TEST_F(WorkspaceTest, FindsEveryRunningProgramOfAnIdentifier) {
  // The session's own file manager always runs.
  const auto found = workspace->runningApplications("com.apple.finder");
  ASSERT_EQ(found.size(), 1u);
  EXPECT_EQ(found[0]->bundleIdentifier(), "com.apple.finder");
  EXPECT_GT(found[0]->processIdentifier(), 1);
  EXPECT_NE(found[0]->processIdentifier(), getpid());
}

TEST_F(WorkspaceTest, FindsNothingUnderAnotherIdentifier) {
  EXPECT_TRUE(workspace->runningApplications("org.vellora.nowhere").empty());
  EXPECT_TRUE(workspace->runningApplications("").empty());
}

TEST_F(WorkspaceTest, TheFrontmostProgramHasAProcess) {
  const auto frontmost = workspace->frontmostApplication();
  ASSERT_TRUE(frontmost);
  EXPECT_GT(frontmost->processIdentifier(), 1);
}

TEST_F(WorkspaceTest, MeasuresThePrimaryScreenAndTheMainOnesScale) {
  ASSERT_GT(NSScreen.screens.count, 0u);
  EXPECT_EQ(workspace->primaryScreenHeight(), NSScreen.screens[0].frame.size.height);
  EXPECT_EQ(workspace->mainScreenScale(), NSScreen.mainScreen.backingScaleFactor);
}

}  // namespace
}  // namespace vellora
