#pragma once

#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "companion/library/folders.h"
#include "companion/library/languages.h"
#include "companion/song/problem.h"

namespace vellora::companion {

// A translation beside a song.
struct TranslationFile {
  std::string language;  // a BCP 47 tag; empty where the name says none
  std::filesystem::path path;

  bool operator==(const TranslationFile&) const = default;
};

// Which files belong to one song.
struct SongFiles {
  std::filesystem::path lyrics;
  std::filesystem::path translation;  // empty where the lyrics stand alone
  // Its name without endings; that of the folder for "lyrics.lrc".
  std::string stem;
  // The folders that it lies in, the innermost first, down from the one that was searched.
  std::vector<std::string> folders;
  // The lyrics of the song after which it is named, with a word more that is no language:
  // "song.lrc" for "song.live.lrc". Empty for all others.
  std::filesystem::path namesake{};
  // The audio file of that stem; empty where there is none but the lyrics.
  std::filesystem::path audio{};
  // All that translate it, `translation` among them.
  std::vector<TranslationFile> translations{};

  bool operator==(const SongFiles&) const = default;
};

struct FoundFiles {
  std::vector<SongFiles> songs;  // in the order of their paths
  std::vector<Problem> problems;
};

// The songs in a folder. A song is a file with an ending that can be read; its translation stands
// beside it as "song.LANGUAGE.lrc" (BCP 47, or a language's name: see Languages),
// "song.translation.lrc", or as a table "song.po" or "song.tsv" beside "song.lrc";
// "translation.lrc" beside "lyrics.lrc" is one too. With another word in that place it is a song of
// its own. Of several languages, `wantedLanguage` (a tag or "") is taken, else the first by name. A
// text file alone is no song. A text file beside an audio file of its stem is one,
// and so is an audio file where no lyrics stand beside it and `withLyrics` has its name, because
// there are lyrics in it.
FoundFiles songsIn(const Folders::Folder& folder, const std::string& wantedLanguage,
                   const std::set<std::string>& withLyrics, Languages& languages);

// How a file is to be named to be found as the translation of `song`.
std::string adviceToTranslate(const std::filesystem::path& song,
                              const std::filesystem::path& translation);

}  // namespace vellora::companion
