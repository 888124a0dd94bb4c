#include "platform/system_clock.h"

#include <ctime>

#include <gtest/gtest.h>

namespace vellora {
namespace {

TEST(SystemClockTest, TellsTheSecondsSince1970) {
  const std::time_t before = std::time(nullptr);
  const double now = SystemClock().now();
  const std::time_t after = std::time(nullptr);
  // The kernel's whole seconds may lag by one of its ticks.
  EXPECT_GE(now, static_cast<double>(before));
  EXPECT_LE(now, static_cast<double>(after) + 1.1);
}

TEST(SystemClockTest, TellsPartsOfASecond) {
  const SystemClock clock;
  const double first = clock.now();
  double second = first;
  while (second == first) second = clock.now();
  EXPECT_LT(second - first, 0.5);
}

}  // namespace
}  // namespace vellora
