#pragma once

#include <functional>

#include "exchange/exchange_folder.h"
#include "exchange/record_reader.h"
#include "platform/clock.h"

namespace vellora {

using CommandRunner = std::function<void(const MusicCommand&)>;

// Takes the pending command from "command.json", if there is one: reads it (`reader` knows what it
// read last, so that a file that stays is decoded once), removes the file, and runs the command if
// it is still fresh, after which `lastNowPlayingPublish` is the distant past so that the command's
// effect is published at once. A file that is no command stays where it is. A file that cannot be
// removed does not keep its command from running, now and at each later call until the command is
// no longer fresh. Main thread.
void performPendingCommand(const SnapshotLocation& snapshot, const Clock& clock,
                           RecordReader<MusicCommand>& reader, const CommandRunner& run,
                           double& lastNowPlayingPublish);

}  // namespace vellora
