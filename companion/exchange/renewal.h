#pragma once

#include <algorithm>
#include <optional>

namespace vellora::companion {

// Says when something is due again. A clock that was set back counts as if the interval had passed.
class Renewal {
 public:
  explicit Renewal(double interval) : interval_(interval) {}

  // Whether it is due at `now`; if so, that is the time from which the next interval counts.
  bool due(double now) {
    if (last_ && now - *last_ < interval_ && now >= *last_) return false;
    last_ = now;
    return true;
  }
  // Seconds after `now` until it is due.
  double left(double now) const {
    return last_ && now >= *last_ ? std::max(interval_ - (now - *last_), 0.0) : 0;
  }
  // The next call of `due` says so.
  void hasten() { last_.reset(); }

 private:
  double interval_;  // seconds
  std::optional<double> last_;
};

}  // namespace vellora::companion
