#pragma once

#include <memory>

#include "companion/program/options.h"
#include "companion/view/view_state.h"
#include "platform/player_watch.h"

namespace vellora::companion {

// Keeps the exchange folder fed until the user ends it. On a terminal its view follows `players`
// while no overlay tells what plays; null: none. The exit status. Main thread.
int keep(const Options& options, std::unique_ptr<PlayerWatch> players);

}  // namespace vellora::companion
