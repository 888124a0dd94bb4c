#include "feeder/step_loop.h"

#include <csignal>

#include <signal.h>
#include <sys/time.h>

namespace vellora::demo {

void stepUntilTerminated(std::chrono::milliseconds interval, const std::function<void()>& step) {
  using std::chrono::duration_cast;
  const auto seconds = duration_cast<std::chrono::seconds>(interval);
  const auto rest = duration_cast<std::chrono::microseconds>(interval - seconds);

  // Blocked, so that they wait here for sigwait and interrupt nothing else.
  sigset_t awaited;
  sigemptyset(&awaited);
  for (const int signal : {SIGINT, SIGTERM, SIGALRM}) sigaddset(&awaited, signal);
  sigprocmask(SIG_BLOCK, &awaited, nullptr);

  step();
  itimerval timer{};
  timer.it_interval.tv_sec = static_cast<decltype(timer.it_interval.tv_sec)>(seconds.count());
  timer.it_interval.tv_usec = static_cast<decltype(timer.it_interval.tv_usec)>(rest.count());
  timer.it_value = timer.it_interval;
  setitimer(ITIMER_REAL, &timer, nullptr);
  for (int received = 0; sigwait(&awaited, &received) == 0 && received == SIGALRM;) step();
  timer = {};
  setitimer(ITIMER_REAL, &timer, nullptr);
}

}  // namespace vellora::demo
