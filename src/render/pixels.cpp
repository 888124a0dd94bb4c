#include "render/pixels.h"

#include <cmath>

#include "base/fatal.h"

namespace vellora {

namespace {

// 2^63, the first whole number above the range.
constexpr double limit = 9223372036854775808.0;

}  // namespace

std::int64_t wholePixels(double value) {
  const double whole = std::trunc(value);
  if (!(whole >= -limit && whole < limit)) {
    fatalError("a pixel coordinate is not finite or out of range");
  }
  return static_cast<std::int64_t>(whole);
}

}  // namespace vellora
