#include "platform/linux/accessibility/bus_waiting.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <ctime>

#include <poll.h>

namespace vellora {

namespace {

using std::chrono::microseconds;
using std::chrono::seconds;
using std::chrono::steady_clock;

// sd-bus's times are microseconds of CLOCK_MONOTONIC, which is the steady clock here.
std::uint64_t microsecondsOf(steady_clock::time_point time) {
  const auto count = std::chrono::ceil<microseconds>(time.time_since_epoch()).count();
  return static_cast<std::uint64_t>(std::max<microseconds::rep>(count, 0));
}

// What to wait for at a connection, and until when at most; false when it is lost.
bool plan(sd_bus* bus, pollfd& input, std::uint64_t& until) {
  input.fd = sd_bus_get_fd(bus);
  const int events = sd_bus_get_events(bus);
  std::uint64_t timeout = UINT64_MAX;
  if (input.fd < 0 || events < 0 || sd_bus_get_timeout(bus, &timeout) < 0) return false;
  input.events = static_cast<short>(events);
  until = std::min(until, timeout);
  return true;
}

}  // namespace

bool waitForEither(sd_bus* first, sd_bus* second, steady_clock::time_point until) {
  std::uint64_t end = microsecondsOf(until);
  std::array<pollfd, 2> inputs{};
  if (!plan(first, inputs[0], end)) return false;
  if (second != nullptr && !plan(second, inputs[1], end)) return true;
  const std::uint64_t now = microsecondsOf(steady_clock::now());
  if (end <= now) return true;
  const auto left = microseconds(std::min<std::uint64_t>(end - now, INT32_MAX));
  const auto whole = std::chrono::duration_cast<seconds>(left);
  const timespec time{whole.count(), std::chrono::nanoseconds(left - whole).count()};
  const nfds_t count = second != nullptr ? 2 : 1;
  return ppoll(inputs.data(), count, &time, nullptr) >= 0 || errno == EINTR;
}

}  // namespace vellora
