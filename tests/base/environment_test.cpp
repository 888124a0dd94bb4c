#include "base/environment.h"

#include <cstdlib>

#include <gtest/gtest.h>

namespace vellora {
namespace {

constexpr const char* name = "VELLORA_TEST_VARIABLE";

class EnvironmentTest : public testing::Test {
 protected:
  ~EnvironmentTest() override { ::unsetenv(name); }
};

TEST_F(EnvironmentTest, AnEmptyVariableCountsAsNotSet) {
  ::unsetenv(name);
  EXPECT_FALSE(environmentVariable(name));
  ::setenv(name, "", 1);
  EXPECT_FALSE(environmentVariable(name));
  ::setenv(name, " value", 1);
  EXPECT_EQ(environmentVariable(name), " value");
}

TEST_F(EnvironmentTest, AFolderIsAnAbsolutePath) {
  EXPECT_FALSE(environmentFolder(name));
  for (const char* const other : {"", "run/user", "./run", "~"}) {
    ::setenv(name, other, 1);
    EXPECT_FALSE(environmentFolder(name)) << other;
  }
  ::setenv(name, "/run/user/1", 1);
  EXPECT_EQ(environmentFolder(name), "/run/user/1");
}

}  // namespace
}  // namespace vellora
