#pragma once

#include <string>

namespace vellora {

// A connection to the local socket at that path, which never waits; -1 where nobody takes
// connections there now. The caller closes it. Any thread.
int connectToLocalSocket(const std::string& path);

}  // namespace vellora
