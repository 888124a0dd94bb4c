#pragma once

#include <functional>

#include "platform/linux/glib/deadline.h"
#include "platform/linux/wayland/session/wayland_ptr.h"

namespace vellora {

// A connection to the compositor whose socket has that name (in XDG_RUNTIME_DIR, unless it is a
// whole path), without a word exchanged yet. Null when there is none by the deadline: libwayland
// itself would wait without end for a compositor that takes no connections. Main thread.
WlDisplayPtr connectToCompositor(const char* name, const Deadline& deadline);

// Sends and takes in what comes until `done` holds; false when the deadline has passed by then, or
// the connection is broken. Main thread.
bool exchangeUntil(wl_display* display, const std::function<bool()>& done,
                   const Deadline& deadline);

}  // namespace vellora
