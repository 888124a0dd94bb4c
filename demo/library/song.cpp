#include "library/song.h"

#include <algorithm>
#include <charconv>
#include <system_error>
#include <utility>

#include "base/files.h"
#include "base/utf8.h"
#include "companion/song/lrc.h"
#include "companion/song/song.h"

namespace vellora::demo {
namespace {

namespace fs = std::filesystem;

using companion::LyricFile;

constexpr std::string_view lyricsFileName = "lyrics.lrc";
constexpr std::string_view translationFileName = "translation.lrc";

SongError errorIn(const std::string& file, std::string message) {
  return {companion::Severity::error, file, 0, std::move(message), {}};
}

LyricFile read(const fs::path& path, std::string_view text) {
  LyricFile file = companion::readLrc(path.string(), text);
  if (!isWellFormed(text)) file.problems = {errorIn(path.string(), "not UTF-8")};
  return file;
}

std::optional<SongError> missing(const LyricFile& file, const std::vector<std::string>& tags) {
  if (!file.problems.empty()) return file.problems.front();
  for (const std::string& tag : tags) {
    if (!file.tags.contains(tag)) return errorIn(file.name, "tag \"" + tag + "\" is missing");
  }
  return std::nullopt;
}

std::variant<Song, SongError> loadSong(const fs::path& folder) {
  const auto lyrics = readWholeFile(folder / lyricsFileName);
  if (!lyrics) return errorIn((folder / lyricsFileName).string(), "cannot be read");
  const auto translation = readWholeFile(folder / translationFileName);
  if (!translation) return errorIn((folder / translationFileName).string(), "cannot be read");
  return parseSong(folder, *lyrics, *translation);
}

}  // namespace

std::variant<Song, SongError> parseSong(const fs::path& folder, std::string_view lyrics,
                                        std::string_view translation) {
  LyricFile words = read(folder / lyricsFileName, lyrics);
  LyricFile meaning = read(folder / translationFileName, translation);
  if (auto error = missing(words, {"ti", "ar", "al", "la", "length"})) return *error;
  if (auto error = missing(meaning, {"la"})) return *error;

  Song song;
  song.slug = folder.filename().string();
  song.title = words.tags.at("ti");
  song.artist = words.tags.at("ar");
  song.album = words.tags.at("al");
  song.language = words.tags.at("la");
  song.translationLanguage = meaning.tags.at("la");
  const companion::Song put = companion::assemble(std::move(words), std::move(meaning));
  if (!put.length) return errorIn(put.name, "tag \"length\" is not of the form mm:ss");
  if (*put.length <= put.lastTime()) {
    SongError error = errorIn(put.name, "the line begins after the song's end");
    error.line = put.lines.back().number;
    return error;
  }
  if (!put.problems.empty()) return put.problems.front();
  song.length = *put.length;
  for (const companion::SongLine& line : put.lines) {
    song.lines.push_back({line.time.value_or(0), line.source, std::nullopt});
    if (!line.translation.empty()) song.lines.back().translation = line.translation;
  }
  return song;
}

std::variant<std::vector<Song>, SongError> loadSongs(const fs::path& folder) {
  std::vector<fs::path> folders;
  std::error_code failure;
  fs::directory_iterator entries(folder, failure);
  if (failure) return errorIn(folder.string(), failure.message());
  for (const fs::directory_entry& entry : entries) {
    if (entry.is_directory(failure)) folders.push_back(entry.path());
  }
  if (folders.empty()) return errorIn(folder.string(), "holds no songs");
  std::ranges::sort(folders);

  std::vector<Song> songs;
  for (const fs::path& path : folders) {
    auto song = loadSong(path);
    if (auto* error = std::get_if<SongError>(&song)) return *error;
    songs.push_back(std::get<Song>(std::move(song)));
  }
  return songs;
}

std::optional<std::size_t> lineAt(const Song& song, double position) {
  const auto later = std::ranges::upper_bound(song.lines, position, {}, &SongLine::time);
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
