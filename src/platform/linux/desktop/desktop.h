#pragma once

#include <memory>

#include "platform/application.h"
#include "platform/clock.h"
#include "platform/music_scripting.h"
#include "platform/status_item.h"

namespace vellora {

// Makes what this folder offers. None of it needs a display; only the status item needs a session
// bus, and is null where there is none. Main thread.
std::unique_ptr<Application> makeApplication();
std::shared_ptr<const Clock> makeClock();
std::unique_ptr<MusicScripting> makeMusicScripting();
// One at a time: the item's place on the bus is free again when the item is gone.
std::unique_ptr<StatusItem> makeStatusItem();

}  // namespace vellora
