#include "companion/library/song_files.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>
#include <utility>

#include "companion/library/languages.h"
#include "companion/lyrics/language_lookup.h"
#include "companion/lyrics/reading.h"
#include "companion/song/text.h"

namespace vellora::companion {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view translationWord = "translation";
constexpr std::string_view lyricsWord = "lyrics";

// The files of one folder by what comes before their ending.
using ByStem = std::map<std::string, std::vector<fs::path>>;

std::size_t preference(const fs::path& path) {
  return static_cast<std::size_t>(std::ranges::find(readableEndings, readableEnding(path)) -
                                  readableEndings.begin());
}

bool sameLetters(std::string_view a, std::string_view b) { return lowerCase(a) == lowerCase(b); }

// "song" and "word" of "song.word"; the word is empty where there is none, or one with blanks,
// which is no more than a part of a title ("Mr. Big").
std::pair<std::string, std::string> parted(const std::string& stem) {
  const std::size_t dot = stem.rfind('.');
  if (dot == std::string::npos || stem.find(' ', dot) != std::string::npos) return {stem, {}};
  return {stem.substr(0, dot), stem.substr(dot + 1)};
}

// The song that a file of this stem translates, and into what; nothing where it is a song itself.
std::optional<std::pair<std::string, std::string>> translates(const std::string& stem,
                                                              const ByStem& all,
                                                              Languages& languages) {
  const auto [base, word] = parted(stem);
  if (sameLetters(base, translationWord)) {
    const auto language = word.empty() ? word : languages.meantBy(word);
    for (const auto& [other, files] : all) {
      if (language && sameLetters(other, lyricsWord)) return std::pair(other, *language);
    }
  }
  if (word.empty() || !all.contains(base)) return std::nullopt;
  if (sameLetters(word, translationWord)) return std::pair(base, std::string());
  if (auto language = languages.meantBy(word)) return std::pair(base, *std::move(language));
  return std::nullopt;
}

fs::path chosen(const std::vector<TranslationFile>& translations, const std::string& wanted) {
  const auto best = std::ranges::min_element(
      translations, [&](const TranslationFile& a, const TranslationFile& b) {
        return std::tuple(remoteness(a.language, wanted), a.language, preference(a.path), a.path) <
               std::tuple(remoteness(b.language, wanted), b.language, preference(b.path), b.path);
      });
  return best == translations.end() ? fs::path() : best->path;
}

class Search {
 public:
  Search(const Folders::Folder& folder, const std::string& wanted,
         const std::set<std::string>& withLyrics, Languages& languages)
      : folder_(folder), wanted_(wanted), withLyrics_(withLyrics), languages_(languages) {}

  FoundFiles run() && {
    ByStem files;
    for (const std::string& name : folder_.files) {
      files[fs::path(name).stem().string()].push_back(folder_.path / name);
    }
    for (const std::string& name : folder_.audio) {
      const std::string stem = fs::path(name).stem().string();
      audio_.emplace(stem, folder_.path / name);
      if (withLyrics_.contains(name)) files.try_emplace(stem, 1, folder_.path / name);
    }
    addSongs(files);
    std::ranges::sort(found_.songs,
                      [](const SongFiles& a, const SongFiles& b) { return a.lyrics < b.lyrics; });
    return std::move(found_);
  }

 private:
  void addSongs(ByStem& files) {
    std::map<std::string, std::vector<TranslationFile>> translations;
    std::set<std::string> translating;
    for (const auto& [stem, paths] : files) {
      const auto song = translates(stem, files, languages_);
      if (!song) continue;
      translating.insert(stem);
      for (const fs::path& path : paths) translations[song->first].push_back({song->second, path});
    }
    for (auto& [stem, paths] : files) {
      std::ranges::sort(paths, [](const fs::path& a, const fs::path& b) {
        return std::pair(preference(a), a) < std::pair(preference(b), b);
      });
    }
    for (const auto& [stem, paths] : files) {
      if (translating.contains(stem)) continue;
      const auto [base, word] = parted(stem);
      const auto namesake = word.empty() ? files.end() : files.find(base);
      addSong(stem, paths, translations[stem],
              namesake == files.end() ? fs::path() : namesake->second.front());
    }
  }

  void addSong(const std::string& stem, const std::vector<fs::path>& paths,
               std::vector<TranslationFile>& translations, fs::path namesake) {
    const bool table = isTable(paths.front());
    for (const fs::path& path : paths) {
      if (!table && isTable(path)) translations.push_back({wanted_, path});
    }
    SongFiles song{paths.front(),
                   chosen(translations, wanted_),
                   stem,
                   folder_.names,
                   std::move(namesake),
                   {},
                   {}};
    const auto audio = audio_.find(stem);
    if (audio != audio_.end() && audio->second != song.lyrics) song.audio = audio->second;
    const bool alone = song.translation.empty() && song.audio.empty();
    if (alone && readableEnding(song.lyrics) == ".txt") return noteText(song);
    if (sameLetters(stem, lyricsWord) && !song.folders.empty()) {
      song.stem = song.folders.front();
      song.folders.erase(song.folders.begin());
    }
    song.translations = std::move(translations);
    found_.songs.push_back(std::move(song));
  }

  void noteText(const SongFiles& song) {
    if (found_.problems.size() >= Problems::most) return;
    const std::string advice = "if it is a song, add " + song.stem + ".LANGUAGE.txt";
    if (song.namesake.empty()) {
      found_.problems.push_back({Severity::note, song.lyrics.string(), 0,
                                 "a text without a translation beside it is left out", advice});
      return;
    }
    found_.problems.push_back({Severity::warning, song.lyrics.string(), 0,
                               "named after " + song.namesake.filename().string() +
                                   ", but not as its translation, and left out",
                               adviceToTranslate(song.namesake, song.lyrics) + "; " + advice});
  }

  const Folders::Folder& folder_;
  const std::string& wanted_;
  const std::set<std::string>& withLyrics_;
  Languages& languages_;
  std::map<std::string, fs::path> audio_;  // by stem
  FoundFiles found_;
};

}  // namespace

std::string adviceToTranslate(const fs::path& song, const fs::path& translation) {
  const std::string stem = song.stem().string();
  const std::string ending = translation.extension().string();
  return "if it translates " + song.filename().string() + ", name it " + stem + ".LANGUAGE" +
         ending + ", such as " + stem + ".de" + ending;
}

FoundFiles songsIn(const Folders::Folder& folder, const std::string& wantedLanguage,
                   const std::set<std::string>& withLyrics, Languages& languages) {
  return Search(folder, wantedLanguage, withLyrics, languages).run();
}

}  // namespace vellora::companion
