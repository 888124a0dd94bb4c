#pragma once

#include <string>
#include <vector>

namespace vellora {

// What fakes were asked, one line a call, in order. Fakes that share one log show the order of the
// calls across seams.
using Log = std::vector<std::string>;

}  // namespace vellora
