#pragma once

#include <iosfwd>
#include <optional>
#include <string_view>

#include "exchange/records/records.h"
#include "platform/clock.h"
#include "platform/music_scripting.h"

namespace vellora {

// The track that a reply to `nowPlayingScript` tells of, read at the clock's present time. Nothing
// for a reply of fewer than two fields or without a title. A "|" inside a name is not escaped by
// the script and shifts the fields after it. Any thread.
std::optional<NowPlayingTrack> nowPlayingTrack(std::string_view reply, const Clock& clock);

// Asks the player what it plays and waits for the answer. Nothing when it is not running, is
// stopped, cannot be asked or gives no usable reply; an error's description goes to `output` as one
// line. Main thread.
std::optional<NowPlayingTrack> readNowPlayingTrack(MusicScripting& scripting, const Clock& clock,
                                                   std::ostream& output);

}  // namespace vellora
