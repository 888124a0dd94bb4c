#pragma once

#include <memory>

#include "companion/program/options.h"
#include "platform/folder_watch.h"
#include "platform/player_watch.h"

namespace vellora::companion {

using WatchFolder = decltype(&makeFolderWatch);

// What the system tells; each may be null.
struct Surroundings {
  std::unique_ptr<PlayerWatch> players;
  WatchFolder watchFolder = nullptr;
};

// Keeps the exchange folder fed until the user ends it. On a terminal its view follows the players
// while no overlay tells what plays. The exit status. Main thread.
int keep(const Options& options, Surroundings surroundings);

}  // namespace vellora::companion
