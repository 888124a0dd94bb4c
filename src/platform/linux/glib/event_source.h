#pragma once

#include <functional>

#include "platform/linux/glib/glib_ptr.h"

namespace vellora {

// Has the loop of `context` (null: the default one) call `function` whenever `source` is due, until
// the result is dropped. The source owns the function, so that a call may drop its own source.
// Takes over `source`, whose callback must be a GSourceFunc. Main thread, or the context's.
GSourcePtr attachSource(GSource* source, std::function<void()> function,
                        int priority = G_PRIORITY_DEFAULT, GMainContext* context = nullptr);

}  // namespace vellora
