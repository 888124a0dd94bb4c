#pragma once

#include <functional>
#include <optional>

#include "exchange/exchange_folder.h"
#include "exchange/record_reader.h"
#include "platform/clock.h"

// Now-playing publishing on the companion's request. Main thread.
namespace vellora {

// Shortest time between two attempts to publish, in seconds.
inline constexpr double nowPlayingPublishInterval = 0.5;

// A time before every other: the beginning of the year 1 of the Julian calendar, in seconds since
// 1970. As the last attempt it lets the next one go ahead at once.
inline constexpr double distantPast = -62135769600.0;

using NowPlayingReader = std::function<std::optional<NowPlayingTrack>()>;

// Whether "sync.json" holds a request that is active now. An unreadable or malformed file is none.
bool syncRequested(const SnapshotLocation& snapshot, const Clock& clock,
                   RecordReader<SyncRequest>& reader);

// Asks `readNowPlaying` and writes "nowplaying.json", unless the last attempt was less than
// `nowPlayingPublishInterval` ago. `lastNowPlayingPublish` becomes the time of this attempt before
// the player is asked, so that a player that does not answer is not asked more often either. Where
// nothing can be read or written the old file stays.
void publishNowPlaying(const SnapshotLocation& snapshot, const Clock& clock,
                       double& lastNowPlayingPublish, const NowPlayingReader& readNowPlaying);

}  // namespace vellora
