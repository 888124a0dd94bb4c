#pragma once

#include "companion/program/options.h"

namespace vellora::companion {

// Sends one player command, waits for its effect and says what happened. The exit status. Main
// thread.
int command(const Options& options);

// Says what plays and what the overlay says. The exit status. Main thread.
int tellStatus(const Options& options);

}  // namespace vellora::companion
