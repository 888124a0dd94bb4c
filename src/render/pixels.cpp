#include "render/pixels.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace vellora {

namespace {

// 2^63, the first whole number above the range.
constexpr double limit = 9223372036854775808.0;

}  // namespace

std::int64_t wholePixels(double value) {
  const double whole = std::trunc(value);
  if (!(whole >= -limit && whole < limit)) {
    std::fputs("Fatal error: a pixel coordinate is not finite or out of range\n", stderr);
    std::abort();
  }
  return static_cast<std::int64_t>(whole);
}

}  // namespace vellora
