#pragma once

#include <vector>

#include "companion/song/lyric_file.h"
#include "companion/song/song.h"

namespace vellora::companion {

// Whether the file's second lines of the same time are translations: at least half of its times
// carry two lines or more.
bool isBilingual(const LyricFile& file);

// The lines of such a file, each second one as the translation of the first. Of three, the last is
// the translation (the one between is a transcription, as files of Chinese and Japanese songs have
// it).
std::vector<SongLine> unfolded(const LyricFile& file, Problems& problems);

// Gives the song's lines the translations of `translation`, and tells what fits nowhere, unless it
// is no more than the song's lost lines account for. Times fit that are at most 0.05 s apart; lines
// of one time fit in their order. Without times on both sides the lines fit in their order, stanza
// by stanza where the numbers of lines differ. A table's lines fit by their text, as the overlay
// looks rows up. `offset` is that of the lyrics: where the two files differ in it, and more lines
// fit by their stamps than by their times, the stamps count.
void pair(Song& song, LyricFile translation, double offset, Problems& problems);

}  // namespace vellora::companion
