#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <optional>

namespace vellora {

// How quickly answers come, and so for how long to look away while several are owed: to be woken
// for each of a volley costs more than the answers. Begins each volley by waiting for the first.
class AnswerPace {
 public:
  using Clock = std::chrono::steady_clock;

  void beginVolley() { heard_.reset(); }

  // So many answers have come together.
  void hear(std::size_t answers, Clock::time_point now) {
    if (answers == 0) return;
    if (heard_) pace_ = (now - *heard_) / static_cast<Clock::rep>(answers);
    heard_ = now;
  }

  // Until about half of what is owed is there; never long, as the pace may be an older one.
  Clock::duration untilHalf(std::size_t owed) const {
    return std::min<Clock::duration>(pace_ * static_cast<Clock::rep>(owed) / 2, longest);
  }
  // Until all of it may be there.
  Clock::duration untilAll(std::size_t owed) const {
    return std::min<Clock::duration>(pace_ * static_cast<Clock::rep>(owed), longest);
  }

 private:
  static constexpr Clock::duration longest = std::chrono::milliseconds(1);
  Clock::duration pace_ = std::chrono::microseconds(20);
  std::optional<Clock::time_point> heard_;
};

}  // namespace vellora
