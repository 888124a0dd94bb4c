#pragma once

#include <array>
#include <filesystem>
#include <iosfwd>
#include <map>
#include <string>
#include <string_view>

#include "companion/song/lyric_file.h"

namespace vellora::companion {

// The endings of the audio files whose tags are read.
inline constexpr std::array<std::string_view, 6> audioEndings{".flac", ".m4a", ".mp3",
                                                              ".oga",  ".ogg", ".opus"};

// Whether the path has one of these, in any letter case.
bool isAudio(const std::filesystem::path& path);

// Reads the tags of an audio file, and nothing of its sound: title, artist, album and length as the
// tags "ti", "ar", "al" and "length" (seconds), and the lyrics that stand in ID3v2's SYLT and USLT,
// in the Vorbis comments SYNCEDLYRICS, LYRICS and UNSYNCEDLYRICS, or in MP4's "©lyr", as lines.
// Lyrics with times, also as LRC within a text, outweigh those without. Of several languages, one
// is the lyrics (that of TLAN, else the first that is not the wanted one) and another their
// translation (the nearest to `wantedLanguage`, a BCP 47 tag or ""). A file without lyrics has no
// lines, and no problem for it. Of tags that are larger than any picture's (16 MiB; texts of 2 MiB)
// nothing is taken, which is told. Never fails otherwise. Any thread.
LyricFile readAudio(const std::filesystem::path& name, std::istream& bytes,
                    std::string_view wantedLanguage);

// Opens the file and reads the same tags of it. Where they say no length, it is that of the sound,
// as far as FLAC, Ogg, Opus and MP4 tell it without decoding; what is read for that is bounded
// likewise. Empty where there is nothing. Any thread.
std::map<std::string, std::string> readRecordingTags(const std::filesystem::path& path);

}  // namespace vellora::companion
