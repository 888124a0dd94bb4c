#pragma once

#include <array>
#include <csignal>

namespace vellora::companion {

// While it lives, the signals by which a user or the system ends a program (SIGINT, SIGTERM,
// SIGHUP), or the end of whoever reads what it writes (SIGPIPE), do nothing but be there to be
// asked for, so that the program can leave its files and its terminal in order. Main thread.
class Interruption {
 public:
  Interruption() {
    sigemptyset(&ending_);
    for (const int signal : signals) sigaddset(&ending_, signal);
    sigprocmask(SIG_BLOCK, &ending_, &before_);
  }
  ~Interruption() { sigprocmask(SIG_SETMASK, &before_, nullptr); }
  Interruption(const Interruption&) = delete;
  Interruption& operator=(const Interruption&) = delete;

  bool asked() const {
    sigset_t waiting;
    sigemptyset(&waiting);
    sigpending(&waiting);
    for (const int signal : signals) {
      if (sigismember(&waiting, signal) == 1) return true;
    }
    return false;
  }
  // Takes what waits, so that it does not end the process once the signals count again.
  void take() const {
    while (asked()) {
      int signal = 0;
      sigwait(&ending_, &signal);
    }
  }

 private:
  static constexpr std::array signals{SIGINT, SIGTERM, SIGHUP, SIGPIPE};

  sigset_t ending_{};
  sigset_t before_{};
};

}  // namespace vellora::companion
