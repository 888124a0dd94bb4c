#include "playback/scroll.h"

#include <algorithm>
#include <cmath>

namespace vellora::demo {

double Scroll::valueFor(double rowTop, double viewportHeight) {
  return std::round(std::max(rowTop - readingLine * viewportHeight, 0.0));
}

void Scroll::jumpTo(double value) {
  from_ = value;
  target_ = value;
}

void Scroll::glideTo(double value, double now) {
  from_ = this->value(now);
  target_ = value;
  start_ = now;
}

double Scroll::value(double now) const {
  const double remaining = 1 - std::clamp((now - start_) / duration, 0.0, 1.0);
  return target_ + (from_ - target_) * remaining * remaining * remaining;
}

bool Scroll::isGliding(double now) const { return from_ != target_ && now < start_ + duration; }

}  // namespace vellora::demo
