#include "base/fatal.h"

#include <csignal>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vellora {
namespace {

TEST(FatalDeathTest, EndsTheProcessAbnormallyWithOneLine) {
  EXPECT_EXIT(fatalError("no such thing"), testing::KilledBySignal(SIGABRT),
              testing::Eq(std::string("Fatal error: no such thing\n")));
}

}  // namespace
}  // namespace vellora
