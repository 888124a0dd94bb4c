#include "companion/program/progress_line.h"

#include <iostream>
#include <utility>

#include <unistd.h>

namespace vellora::companion {
namespace {

constexpr std::chrono::milliseconds interval{100};

}  // namespace

ProgressLine::ProgressLine(std::string what)
    : what_(std::move(what)), terminal_(isatty(STDERR_FILENO) == 1), due_(Clock::now()) {}

void ProgressLine::show(std::size_t done, std::size_t all) {
  if (!terminal_ || Clock::now() < due_) return;
  due_ = Clock::now() + interval;
  std::cerr << "\r" << done;
  if (all > 0) std::cerr << " of " << all;
  std::cerr << " " << what_ << "\x1b[K" << std::flush;
  shown_ = true;
}

void ProgressLine::clear() {
  if (std::exchange(shown_, false)) std::cerr << "\r\x1b[K" << std::flush;
}

}  // namespace vellora::companion
