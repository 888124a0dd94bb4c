#include "contracts/clock_contract.h"

#include <array>
#include <thread>

namespace vellora {
namespace {

bool isRight(const ClockSubject& subject, const Clock& clock) {
  const double before = subject.truth();
  const double now = clock.now();
  return now >= before - 1e-3 && now <= subject.truth() + 1e-3;
}

}  // namespace

TEST_P(ClockContract, TellsTheSecondsSince1970WithTheirParts) {
  EXPECT_TRUE(isRight(*subject, subject->clock()));
}

TEST_P(ClockContract, AnyThreadMayAsk) {
  const Clock& clock = subject->clock();
  std::array<bool, 4> right{};
  std::array<std::thread, 4> threads;
  for (std::size_t i = 0; i < threads.size(); ++i) {
    threads[i] = std::thread([&, i] { right[i] = isRight(*subject, clock); });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(right, (std::array{true, true, true, true}));
}

}  // namespace vellora
