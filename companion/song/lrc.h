#pragma once

#include <string_view>

#include "companion/song/lyric_file.h"

namespace vellora::companion {

// Reads LRC as it is found: tags "[ti:Title]" anywhere, "[offset:+250]" (milliseconds by which all
// lines come sooner), several stamps before a line, stamps as `parseStamp` takes them, stamps of
// single words ("<00:01.20>", or "[…]" within the text) left out. Lines are sorted by time, those
// of one time stay in the file's order. A file without any stamp is taken as plain text. `text` is
// UTF-8. Lines that name who made the song and lines of JSON, as services put them first, are left
// out; "[tr]" or "[tr:LANGUAGE]" before a text makes it the translation of the line of that time,
// or of the line before where it has no time; "[tt]", the times of words, is left out. Never fails:
// what cannot be read is among the problems. Any thread.
LyricFile readLrc(std::string_view name, std::string_view text);

}  // namespace vellora::companion
