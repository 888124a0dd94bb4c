#include "companion/program/interruption.h"

#include <algorithm>
#include <cmath>
#include <ctime>

#include <sys/select.h>

namespace vellora::companion {
namespace {

volatile std::sig_atomic_t came = 0;

void note(int signal) {
  if (signal != SIGCHLD) came = 1;
}

constexpr double longestWait = 3600;  // seconds
constexpr double nanoseconds = 1e9;

}  // namespace

// The signals come in while it waits alone: then none is lost between a question and a wait, and
// no call elsewhere is cut short.
Interruption::Interruption() {
  came = 0;
  sigset_t held;
  sigemptyset(&held);
  for (const int signal : ending) sigaddset(&held, signal);
  sigaddset(&held, SIGCHLD);
  sigaddset(&held, SIGWINCH);
  sigprocmask(SIG_BLOCK, &held, &before_);
  awake_ = before_;
  for (const int signal : ending) sigdelset(&awake_, signal);
  sigdelset(&awake_, SIGCHLD);
  sigdelset(&awake_, SIGWINCH);
  struct sigaction action {};
  action.sa_handler = note;
  sigemptyset(&action.sa_mask);
  for (std::size_t i = 0; i < ending.size(); ++i) sigaction(ending.at(i), &action, &actions_.at(i));
  sigaction(SIGCHLD, &action, &actions_.back());
}

Interruption::~Interruption() {
  for (std::size_t i = 0; i < ending.size(); ++i) sigaction(ending.at(i), &actions_.at(i), nullptr);
  sigaction(SIGCHLD, &actions_.back(), nullptr);
  sigprocmask(SIG_SETMASK, &before_, nullptr);
}

bool Interruption::asked() const {
  if (came != 0) return true;
  sigset_t waiting;
  sigemptyset(&waiting);
  sigpending(&waiting);
  return std::ranges::any_of(ending,
                             [&waiting](int signal) { return sigismember(&waiting, signal) == 1; });
}

void Interruption::take() const {
  sigset_t all;
  sigemptyset(&all);
  for (const int signal : ending) sigaddset(&all, signal);
  came = 0;
  while (asked()) {
    int signal = 0;
    sigwait(&all, &signal);
  }
}

void Interruption::wait(double seconds, std::initializer_list<int> descriptors) const {
  fd_set inputs;
  FD_ZERO(&inputs);
  int last = -1;
  for (const int descriptor : descriptors) {
    if (descriptor < 0 || descriptor >= FD_SETSIZE) continue;
    FD_SET(descriptor, &inputs);
    last = std::max(last, descriptor);
  }
  const double bounded = std::clamp(seconds, 0.0, longestWait);
  timespec patience{};
  patience.tv_sec = static_cast<time_t>(bounded);
  patience.tv_nsec = static_cast<long>((bounded - std::floor(bounded)) * nanoseconds);
  pselect(last + 1, &inputs, nullptr, nullptr, &patience, &awake_);
}

}  // namespace vellora::companion
