#pragma once

#include "companion/song/lyric_file.h"

namespace vellora::companion {

// Takes lines that name who made the song, as "作词 : …" and "Lyrics by: …" do (a word that is
// known for it, or several, then a colon), out of the file where they stand together at the
// beginning or at the end: all others may be sung. At the beginning a title may stand before them,
// and before what Chinese, Japanese and Korean have an artist too. What was taken out is noted.
void leaveOutCredits(LyricFile& file, Problems& problems);

}  // namespace vellora::companion
