#pragma once

#include <functional>

#include "platform/linux/glib/glib_ptr.h"

namespace vellora {

// Has the default main context call `function` whenever `fd` can be read from or is at its end,
// until the result is dropped; a call may drop its own source. Main thread.
GSourcePtr whenReadable(int fd, std::function<void()> function);

}  // namespace vellora
