#pragma once

#include <algorithm>
#include <cmath>
#include <optional>

namespace vellora::companion {

// When a server that failed may be asked again: after two seconds, then after twice as long each
// time, a quarter of an hour at most; later where it says so itself, by an hour at most. Times in
// seconds since 1970. A clock that was set back ends the rest.
class Rest {
 public:
  static constexpr double shortest = 2, longest = 900, longestAsked = 3600;

  bool over(double now) const { return now < begun_ || now >= begun_ + span_; }
  void fail(double now, std::optional<double> asked) {
    begun_ = now;
    span_ = std::min(shortest * std::exp2(failures_++), longest);
    span_ = std::max(span_, std::min(asked.value_or(0), longestAsked));
  }
  void succeed() {
    failures_ = 0;
    span_ = 0;
  }

 private:
  int failures_ = 0;
  double begun_ = 0;
  double span_ = 0;
};

}  // namespace vellora::companion
