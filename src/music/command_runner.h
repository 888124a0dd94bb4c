#pragma once

#include <iosfwd>

#include "exchange/records/records.h"
#include "platform/music_scripting.h"

namespace vellora {

// Has the player carry the command out and waits for it. The outcome goes to `output` as one line,
// an error's description as a second one. A position that is not a whole number of milliseconds in
// 64 bits ends the process, whatever the action. Main thread.
void runInMusic(const MusicCommand& command, MusicScripting& scripting, std::ostream& output);

}  // namespace vellora
