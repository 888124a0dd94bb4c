#include "companion/library/library.h"

#include <system_error>
#include <utility>

#include "companion/lyrics/reading.h"

namespace vellora::companion {
namespace {

namespace fs = std::filesystem;

// FNV-1a over whole numbers.
constexpr std::uint64_t basis = 0xCBF29CE484222325U;

void mix(std::uint64_t& hash, std::uint64_t value) { hash = (hash ^ value) * 0x100000001B3U; }

void mixFile(std::uint64_t& hash, const fs::path& path) {
  std::error_code error;
  const auto time = fs::last_write_time(path, error);
  mix(hash, error ? 1U : static_cast<std::uint64_t>(time.time_since_epoch().count()));
  const auto size = fs::file_size(path, error);
  mix(hash, error ? 1U : static_cast<std::uint64_t>(size));
}

}  // namespace

std::string LibrarySong::label() const {
  return names.artist.empty() ? names.title : names.title + " — " + names.artist;
}

Library::Library(fs::path folder, std::string language)
    : folder_(std::move(folder)), language_(std::move(language)) {}

void Library::refresh() {
  FoundFiles found = findSongFiles(folder_, language_);
  problems_ = std::move(found.problems);
  songs_.clear();
  std::map<fs::path, Known> known;
  for (SongFiles& files : found.songs) {
    std::uint64_t now = basis;
    mixFile(now, files.lyrics);
    const auto before = known_.find(files.lyrics);
    SongNames names = before != known_.end() && before->second.version == now
                          ? std::move(before->second.names)
                          : namesOf(files, readLyricFile(files.lyrics, language_));
    known[files.lyrics] = {now, names};
    songs_.push_back({std::move(files), std::move(names)});
  }
  known_ = std::move(known);
}

std::optional<std::size_t> Library::find(std::string_view title, std::string_view artist) const {
  for (const std::string& spelling : {std::string(title), plainTitle(title)}) {
    const SongKeys wanted = keysOf(spelling, artist);
    std::optional<std::size_t> best;
    int most = 0;
    for (std::size_t i = 0; i < songs_.size(); ++i) {
      const int sure = likeness(songs_[i].names, wanted);
      if (sure <= most) continue;
      most = sure;
      best = i;
    }
    if (best) return best;
  }
  return std::nullopt;
}

Song Library::load(const LibrarySong& song) const {
  LyricFile lyrics = readLyricFile(song.files.lyrics, language_);
  std::optional<LyricFile> translation;
  if (!song.files.translation.empty()) {
    translation = readLyricFile(song.files.translation, language_);
  }
  return assemble(std::move(lyrics), std::move(translation));
}

std::uint64_t Library::version(const SongFiles& files) {
  std::uint64_t hash = basis;
  mixFile(hash, files.lyrics);
  mixFile(hash, files.lyrics.parent_path());
  if (!files.translation.empty()) mixFile(hash, files.translation);
  return hash;
}

}  // namespace vellora::companion
