#include "library/song.h"

#include <algorithm>
#include <charconv>
#include <system_error>
#include <utility>

#include "base/files.h"

namespace vellora::demo {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view lyricsFileName = "lyrics.lrc";
constexpr std::string_view translationFileName = "translation.lrc";

std::optional<SongError> missingTag(const LrcFile& file, const std::vector<std::string>& tags) {
  for (const std::string& tag : tags) {
    if (!file.tags.contains(tag)) return SongError{file.name, 0, "tag \"" + tag + "\" is missing"};
  }
  if (file.lines.empty()) return SongError{file.name, 0, "no lines"};
  return std::nullopt;
}

std::optional<SongError> addTranslation(Song& song, const LrcFile& lyrics,
                                        const LrcFile& translation) {
  for (const LrcLine& line : translation.lines) {
    const auto same =
        std::find_if(lyrics.lines.begin(), lyrics.lines.end(),
                     [&](const LrcLine& other) { return other.centiseconds == line.centiseconds; });
    if (same == lyrics.lines.end()) {
      return SongError{translation.name, line.number, "no line of the lyrics has this time stamp"};
    }
    song.lines[static_cast<std::size_t>(same - lyrics.lines.begin())].translation = line.text;
  }
  return std::nullopt;
}

std::variant<Song, SongError> loadSong(const fs::path& folder) {
  const auto lyrics = readWholeFile(folder / lyricsFileName);
  if (!lyrics) return SongError{(folder / lyricsFileName).string(), 0, "cannot be read"};
  const auto translation = readWholeFile(folder / translationFileName);
  if (!translation) return SongError{(folder / translationFileName).string(), 0, "cannot be read"};
  return parseSong(folder, *lyrics, *translation);
}

}  // namespace

std::variant<Song, SongError> parseSong(const fs::path& folder, std::string_view lyrics,
                                        std::string_view translation) {
  const std::vector<std::string> lyricsTags{"ti", "ar", "al", "la", "length"};
  const std::vector<std::string> translationTags{"la"};
  auto first = parseLrc((folder / lyricsFileName).string(), lyrics, lyricsTags);
  if (auto* error = std::get_if<SongError>(&first)) return *error;
  auto second = parseLrc((folder / translationFileName).string(), translation, translationTags);
  if (auto* error = std::get_if<SongError>(&second)) return *error;
  const auto& words = std::get<LrcFile>(first);
  const auto& meaning = std::get<LrcFile>(second);
  if (auto error = missingTag(words, lyricsTags)) return *error;
  if (auto error = missingTag(meaning, translationTags)) return *error;

  const int length = parseStamp(words.tags.at("length"));
  if (length < 0) return SongError{words.name, 0, "tag \"length\" is not of the form mm:ss"};
  if (length <= words.lines.back().centiseconds) {
    return SongError{words.name, words.lines.back().number, "the line begins after the song's end"};
  }

  Song song;
  song.slug = folder.filename().string();
  song.title = words.tags.at("ti");
  song.artist = words.tags.at("ar");
  song.album = words.tags.at("al");
  song.language = words.tags.at("la");
  song.translationLanguage = meaning.tags.at("la");
  song.length = length / 100.0;
  for (const LrcLine& line : words.lines) {
    song.lines.push_back({line.centiseconds / 100.0, line.text, std::nullopt});
  }
  if (auto error = addTranslation(song, words, meaning)) return *error;
  return song;
}

std::variant<std::vector<Song>, SongError> loadSongs(const fs::path& folder) {
  std::vector<fs::path> folders;
  std::error_code failure;
  fs::directory_iterator entries(folder, failure);
  if (failure) return SongError{folder.string(), 0, failure.message()};
  for (const fs::directory_entry& entry : entries) {
    if (entry.is_directory(failure)) folders.push_back(entry.path());
  }
  if (folders.empty()) return SongError{folder.string(), 0, "holds no songs"};
  std::sort(folders.begin(), folders.end());

  std::vector<Song> songs;
  for (const fs::path& path : folders) {
    auto song = loadSong(path);
    if (auto* error = std::get_if<SongError>(&song)) return *error;
    songs.push_back(std::get<Song>(std::move(song)));
  }
  return songs;
}

std::optional<std::size_t> lineAt(const Song& song, double position) {
  const auto later =
      std::upper_bound(song.lines.begin(), song.lines.end(), position,
                       [](double value, const SongLine& line) { return value < line.time; });
  if (later == song.lines.begin()) return std::nullopt;
  return static_cast<std::size_t>(later - song.lines.begin()) - 1;
}

std::optional<std::size_t> findSong(const std::vector<Song>& songs, std::string_view wanted) {
  for (std::size_t i = 0; i < songs.size(); ++i) {
    if (songs[i].title == wanted || songs[i].slug == wanted) return i;
  }
  std::size_t number = 0;
  const auto [end, error] = std::from_chars(wanted.data(), wanted.data() + wanted.size(), number);
  if (error != std::errc() || end != wanted.data() + wanted.size()) return std::nullopt;
  if (number < 1 || number > songs.size()) return std::nullopt;
  return number - 1;
}

}  // namespace vellora::demo
