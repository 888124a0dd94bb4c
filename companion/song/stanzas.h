#pragma once

#include "companion/song/lyric_file.h"
#include "companion/song/song.h"

namespace vellora::companion {

// Gives the song's lines the translation's lines by their place: one by one where there are as many
// of each, else stanza by stanza, as long as the stanzas have as many lines. What is left is told.
void pairByPlace(Song& song, const LyricFile& translation, Problems& problems);

}  // namespace vellora::companion
