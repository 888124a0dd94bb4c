#pragma once

#include <array>
#include <csignal>
#include <initializer_list>

namespace vellora::companion {

// While it lives, the signals by which a user or the system ends a program (SIGINT, SIGTERM,
// SIGHUP), or the end of whoever reads what it writes (SIGPIPE), do nothing but be there to be
// asked for, so that the program can leave its files and its terminal in order. One at a time. Main
// thread.
class Interruption {
 public:
  Interruption();
  ~Interruption();
  Interruption(const Interruption&) = delete;
  Interruption& operator=(const Interruption&) = delete;

  bool asked() const;
  // Takes what waits, so that it does not end the process once the signals count again.
  void take() const;

  // Waits for `seconds` at most: until one of the descriptors (-1 stands for none) can be read
  // from, one of those signals comes or has come, a program that was started has ended (SIGCHLD),
  // or the terminal has another size (SIGWINCH).
  void wait(double seconds, std::initializer_list<int> descriptors) const;

 private:
  static constexpr std::array ending{SIGINT, SIGTERM, SIGHUP, SIGPIPE};

  sigset_t before_{};
  sigset_t awake_{};  // while it waits
  std::array<struct sigaction, ending.size() + 1> actions_{};
};

}  // namespace vellora::companion
