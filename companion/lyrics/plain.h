#pragma once

#include <string_view>

#include "companion/song/lyric_file.h"

namespace vellora::companion {

// Plain text: each line is a line of the song, blank ones part its stanzas. `text` is UTF-8. Any
// thread.
LyricFile readPlain(std::string_view name, std::string_view text);

}  // namespace vellora::companion
