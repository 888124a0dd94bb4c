#pragma once

#include <string_view>

#include "companion/song/lyric_file.h"

namespace vellora::companion {

// Whether a line names who made the song, as "作词 : …" and "Lyrics by: …" do: a word that is known
// for it, or several, then a colon.
bool isCredit(std::string_view text);

// Takes such lines out of the file. What Chinese, Japanese and Korean have is taken out anywhere;
// English ones, which may be sung, only where they stand together at the beginning, with at most a
// title before them, or at the end. What was taken out is noted.
void leaveOutCredits(LyricFile& file, Problems& problems);

}  // namespace vellora::companion
