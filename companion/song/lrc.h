#pragma once

#include <string_view>

#include "companion/song/lyric_file.h"

namespace vellora::companion {

// Reads LRC as it is found: tags "[ti:Title]" anywhere, "[offset:+250]" (milliseconds by which all
// lines come sooner), several stamps before a line, stamps as `parseStamp` takes them, stamps of
// single words ("<00:01.20>", or "[…]" within the text) left out. Lines are sorted by time, those
// of one time stay in the file's order. A file without any stamp is taken as plain text. `text` is
// UTF-8. Never fails: what cannot be read is among the problems. Any thread.
LyricFile readLrc(std::string_view name, std::string_view text);

}  // namespace vellora::companion
