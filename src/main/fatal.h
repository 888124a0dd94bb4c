#pragma once

#include <string_view>

namespace vellora {

// Ends the process abnormally, with a line on standard error.
[[noreturn]] void fatalError(std::string_view message);

}  // namespace vellora
