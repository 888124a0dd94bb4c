#pragma once

#include <vector>

#include "companion/song/lyric_file.h"
#include "companion/song/song.h"

namespace vellora::companion {

// Whether the file's second lines of the same time are translations: at least half of its times
// carry two lines or more. Where no two lines have the very same time, those that are at most 0.05
// s apart count as of one time.
bool isBilingual(const LyricFile& file);

// The lines of such a file, each second one as the translation of the first. Of three, the last is
// the translation (the one between is a transcription, as files of Chinese and Japanese songs have
// it). Where each translation has the time of the next line, which its script shows, it is given
// back to the line before.
std::vector<SongLine> unfolded(const LyricFile& file, Problems& problems);

}  // namespace vellora::companion
