#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace vellora::companion {

// A line on standard error that says how far long work is, and goes when the work is done. Says
// nothing where standard error is no terminal. Main thread.
class ProgressLine {
 public:
  // `what`: as "songs checked".
  explicit ProgressLine(std::string what);
  ~ProgressLine() { clear(); }
  ProgressLine(const ProgressLine&) = delete;
  ProgressLine& operator=(const ProgressLine&) = delete;

  // `all`: 0 where nobody knows.
  void show(std::size_t done, std::size_t all);
  void clear();

 private:
  using Clock = std::chrono::steady_clock;
  std::string what_;
  bool terminal_;
  bool shown_ = false;
  Clock::time_point due_;
};

}  // namespace vellora::companion
