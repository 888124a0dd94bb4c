#pragma once

#include <string_view>

#include "companion/song/lyric_file.h"

namespace vellora::companion {

// Reads SubRip: blocks of a number, "hh:mm:ss,mmm --> hh:mm:ss,mmm" and lines of text, parted by
// blank lines; WebVTT's point for the comma and its missing hours too. Tags ("<i>", "{\an8}") are
// left out. Each line of text is a line of its own with its block's time, so that a block of two
// lines may be a line and its translation. `text` is UTF-8. Any thread.
LyricFile readSrt(std::string_view name, std::string_view text);

}  // namespace vellora::companion
