#pragma once

#include "companion/program/options.h"
#include "companion/view/view_state.h"

namespace vellora::companion {

// Keeps the exchange folder fed until the user ends it. The exit status. Main thread.
int keep(const Options& options);

}  // namespace vellora::companion
