#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "companion/library/song_files.h"
#include "companion/song/lyric_file.h"

namespace vellora::companion {

// What a player says a song is, or what a song's files say it is, as comparison keys (see
// OverlayMatching::normalized).
struct SongKeys {
  std::string title;
  std::string artist;  // may be empty
};

SongKeys keysOf(std::string_view title, std::string_view artist);

// The title without what players add to it: brackets at its end, and what follows " - " where that
// names a version ("Remastered 2011", "Live"). The title itself where nothing else were left.
std::string plainTitle(std::string_view title);

// By what names a song may be known.
struct SongNames {
  // Of its tags; empty where it has none.
  SongKeys tags;
  // What its file name may mean: "Artist - Title", "Title - Artist", "Title" in the folder of an
  // artist, "Title" by anybody where it lies in no folder; each with a number before it and
  // without.
  std::vector<SongKeys> fileName;
  // The same for people.
  std::string title;
  std::string artist;
};

SongNames namesOf(const SongFiles& files, const LyricFile& lyrics);

// How sure it is that the song is the one that is wanted: 0 for another song, more is surer. Tags
// outweigh file names; an artist that differs throughout makes it another song.
int likeness(const SongNames& song, const SongKeys& wanted);

}  // namespace vellora::companion
