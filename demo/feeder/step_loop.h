#pragma once

#include <chrono>
#include <functional>

namespace vellora::demo {

// Calls `step` at once and then every `interval`, until the process is asked to end (SIGINT or
// SIGTERM), which also ends the waiting in between. Takes over those signals and SIGALRM with the
// process's interval timer (setitimer(2)); for a program of one thread.
void stepUntilTerminated(std::chrono::milliseconds interval, const std::function<void()>& step);

}  // namespace vellora::demo
