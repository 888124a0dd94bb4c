#pragma once

#include "companion/song/lyric_file.h"
#include "companion/song/song.h"

namespace vellora::companion {

// Gives the song's lines the translations of `translation`, and tells what fits nowhere, unless it
// is no more than the song's lost lines account for. Times fit that are at most 0.05 s apart; lines
// of one time fit in their order. Without times on both sides the lines fit in their order, stanza
// by stanza where the numbers of lines differ. A table's lines fit by their text, as the overlay
// looks rows up. `offset` is that of the lyrics: where the two files differ in it, and more lines
// fit by their stamps than by their times, the stamps count.
void pair(Song& song, LyricFile translation, double offset, Problems& problems);

}  // namespace vellora::companion
