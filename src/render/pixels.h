#pragma once

#include <cstdint>

namespace vellora {

// `value` pixels, cut to a whole number toward zero. A value that is not finite or does not fit the
// result ends the process with a line on standard error: no bitmap can have such a size or pixel.
// Any thread.
std::int64_t wholePixels(double value);

}  // namespace vellora
