#pragma once

#include <string_view>

namespace vellora {

// Ends the process abnormally (SIGABRT), with "Fatal error: " and the message as one line on
// standard error: for values that nothing sensible can be made of. Any thread.
[[noreturn]] void fatalError(std::string_view message);

}  // namespace vellora
