#include "companion/library/library.h"

#include <algorithm>
#include <functional>
#include <set>
#include <system_error>
#include <utility>

#include "companion/lyrics/audio.h"
#include "companion/lyrics/language_lookup.h"
#include "companion/lyrics/reading.h"
#include "companion/song/time_stamp.h"

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

std::uint64_t versionOf(const fs::path& path) {
  std::uint64_t hash = basis;
  mixFile(hash, path);
  return hash;
}

std::uint64_t nameVersion(const SongFiles& files) {
  std::uint64_t hash = basis;
  mixFile(hash, files.lyrics);
  if (!files.audio.empty()) mixFile(hash, files.audio);
  return hash;
}

// What a folder or a file takes off the work of a look: its times, and its reading.
constexpr int timeWork = 1;
constexpr int folderWork = 20;
constexpr int fileWork = 30;
constexpr int pieceWork = 1000;
constexpr int idleWork = 400;
constexpr int roundsForFiles = 8;

constexpr int mostRecordings = 8;
// A likeness with an artist that both sides name.
constexpr int artistsKnown = 4;

std::uint32_t hashOf(const std::string& title) {
  return static_cast<std::uint32_t>(std::hash<std::string>{}(title));
}

bool mayBeSame(std::string_view album, std::string_view other) {
  return album.empty() || other.empty() || keysOf(album, {}).title == keysOf(other, {}).title;
}

// The names of an audio file without lyrics.
SongNames soundNames(const Folders::Folder& folder, const std::string& name,
                     std::map<std::string, std::string> tags) {
  LyricFile file;
  file.tags = std::move(tags);
  return namesOf({{}, {}, fs::path(name).stem().string(), folder.names}, file);
}

}  // namespace

std::string LibrarySong::label() const {
  return names.artist.empty() ? names.title : names.title + " — " + names.artist;
}

Library::Library(fs::path folder, std::string language)
    : folders_(folder), language_(std::move(language)) {}

void Library::refresh() {
  beginLook();
  while (looking()) look(0);
}

void Library::beginLook() {
  folders_.begin();
  stage_ = Stage::folders;
  filesToo_ = true;
  idle_ = false;
}

bool Library::look(double now) {
  lookOn(now, pieceWork);
  return std::exchange(changed_, false);
}

bool Library::lookIdly(double now) {
  if (stage_ == Stage::done) {
    beginLook();
    // A file that was changed in place is rarer than one that came.
    const bool few = songs_.size() + audio_.size() <= static_cast<std::size_t>(idleWork);
    filesToo_ = few || ++idleRounds_ % roundsForFiles == 0;
  }
  lookOn(now, idleWork);
  idle_ = !changed_;
  return std::exchange(changed_, false);
}

void Library::lookOn(double now, int work) {
  while (stage_ != Stage::done && work > 0) {
    work -= stage_ == Stage::folders ? lookAtFolder(now)
            : stage_ == Stage::files ? lookAtSong()
                                     : lookAtAudio();
  }
}

int Library::lookAtFolder(double now) {
  const Folders::Look look = folders_.next(now);
  for (const std::size_t gone : folders_.takeGone()) drop(gone);
  if (look.folder == nullptr) {
    stage_ = Stage::files;
    song_ = sound_ = 0;
    return timeWork;
  }
  if (!look.read) return timeWork;
  ++work_.folders;
  if (look.changed) take(*look.folder, look.hadFiles);
  return folderWork + static_cast<int>(look.folder->files.size() + look.folder->audio.size());
}

int Library::lookAtSong() {
  if (song_ >= songs_.size()) {
    stage_ = Stage::audio;
    return timeWork;
  }
  LibrarySong& song = songs_[song_++];
  if (song.version != 0 && !filesToo_) return 0;
  const std::uint64_t version = nameVersion(song.files);
  if (song.version == version) return timeWork;
  song.version = version;
  name(song);
  changed_ = true;
  return fileWork;
}

// By its tags; an audio file beside it has some where it has none.
void Library::name(LibrarySong& song) {
  ++work_.files;
  LyricFile file = readLyricFile(song.files.lyrics, language_);
  if (!song.files.audio.empty() && !file.tags.contains("ti")) {
    ++work_.files;
    file.tags.merge(readLyricFile(song.files.audio, language_).tags);
  }
  song.names = namesOf(song.files, file);
  song.album = file.tags["al"];
  song.length = parseTime(file.tags["length"]);
}

// Those that have lyrics become songs, which are named afterwards.
int Library::lookAtAudio() {
  const bool all = sound_ >= audio_.size();
  if (sounding_ != nullptr && (all || audio_[sound_].folder != sounding_)) {
    takeSongs(*std::exchange(sounding_, nullptr), true);
    stage_ = Stage::files;
    return folderWork;
  }
  if (all) {
    end();
    return timeWork;
  }
  Audio& audio = audio_[sound_++];
  if (audio.version != 0 && !filesToo_) return 0;
  const fs::path path = audio.folder->path / audio.name;
  const std::uint64_t version = versionOf(path);
  if (audio.version == version) return timeWork;
  ++work_.files;
  audio.version = version;
  LyricFile file = readLyricFile(path, language_);
  const bool lyrics = !file.lines.empty();
  std::string title = file.tags["ti"];
  if (title.empty()) title = soundNames(*audio.folder, audio.name, {}).title;
  audio.title = hashOf(keysOf(title, {}).title);
  if (std::exchange(audio.lyrics, lyrics) != lyrics) {
    sounding_ = audio.folder;
    soundingNumber_ = audio.number;
  }
  return fileWork;
}

// The audio files that it had stay known as far as they are the same.
void Library::take(const Folders::Folder& folder, bool hadFiles) {
  std::map<std::string, Audio> before;
  if (hadFiles) {
    for (Audio& audio : audio_) {
      if (audio.number == folder.number) before.emplace(audio.name, audio);
    }
    std::erase_if(audio_, [&](const Audio& audio) { return audio.number == folder.number; });
  }
  std::set<std::string> stems;
  for (const std::string& name : folder.files) stems.insert(fs::path(name).stem().string());
  for (const std::string& name : folder.audio) {
    if (stems.contains(fs::path(name).stem().string())) continue;
    const auto known = before.find(name);
    audio_.push_back(known == before.end() ? Audio{folder.number, &folder, name} : known->second);
  }
  takeSongs(folder, hadFiles);
}

// The songs that it had keep their names as far as they are the same. They are the last afterwards.
void Library::takeSongs(const Folders::Folder& folder, bool hadFiles) {
  std::map<fs::path, LibrarySong> before;
  std::set<std::string> withLyrics;
  if (hadFiles) {
    for (LibrarySong& song : songs_) {
      if (song.folder == folder.number) before.emplace(song.files.lyrics, std::move(song));
    }
    for (const Audio& audio : audio_) {
      if (audio.number == folder.number && audio.lyrics) withLyrics.insert(audio.name);
    }
    dropSongs(folder.number);
  }
  FoundFiles found = songsIn(folder, language_, withLyrics, languages_);
  song_ = songs_.size();
  for (SongFiles& files : found.songs) {
    const auto known = before.find(files.lyrics);
    LibrarySong song;
    if (known != before.end()) song = std::move(known->second);
    song.files = std::move(files);
    song.folder = folder.number;
    songs_.push_back(std::move(song));
  }
  if (!found.problems.empty()) told_[folder.number] = std::move(found.problems);
  changed_ = unsorted_ = true;
}

void Library::drop(std::size_t folder) {
  std::erase_if(audio_, [&](const Audio& audio) { return audio.number == folder; });
  if (soundingNumber_ == folder) sounding_ = nullptr;
  dropSongs(folder);
}

void Library::dropSongs(std::size_t folder) {
  std::erase_if(songs_, [&](const LibrarySong& song) { return song.folder == folder; });
  told_.erase(folder);
  changed_ = true;
}

void Library::end() {
  stage_ = Stage::done;
  complete_ = true;
  problems_ = folders_.problems();
  for (const auto& [folder, problems] : told_) {
    if (problems_.size() > Problems::most) break;
    problems_.insert(problems_.end(), problems.begin(), problems.end());
  }
  if (!std::exchange(unsorted_, false)) return;
  std::ranges::sort(songs_, [](const LibrarySong& a, const LibrarySong& b) {
    return a.files.lyrics < b.files.lyrics;
  });
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

std::vector<std::size_t> Library::findAll(std::string_view title, std::string_view artist) const {
  std::vector<std::size_t> result;
  std::set<std::size_t> known;
  for (const std::string& spelling : {std::string(title), plainTitle(title)}) {
    const SongKeys wanted = keysOf(spelling, artist);
    std::vector<std::pair<int, std::size_t>> found;
    for (std::size_t i = 0; i < songs_.size(); ++i) {
      const int sure = likeness(songs_[i].names, wanted);
      if (sure > 0 && known.insert(i).second) found.emplace_back(sure, i);
    }
    std::ranges::stable_sort(found, std::greater(), &std::pair<int, std::size_t>::first);
    for (const auto& [sure, place] : found) result.push_back(place);
  }
  return result;
}

std::optional<Recording> Library::recording(std::string_view title, std::string_view artist,
                                            std::string_view album) const {
  int opened = 0;
  for (const std::string& spelling : {std::string(title), plainTitle(title)}) {
    const SongKeys wanted = keysOf(spelling, artist);
    const std::uint32_t hash = hashOf(wanted.title);
    for (const Audio& audio : audio_) {
      if (audio.version == 0 || audio.title != hash) continue;
      if (opened++ == mostRecordings) return std::nullopt;
      auto tags = readRecordingTags(audio.folder->path / audio.name);
      Recording found{tags["al"], parseTime(tags["length"])};
      const SongNames names = soundNames(*audio.folder, audio.name, std::move(tags));
      const bool another = likeness(names, wanted) < artistsKnown;
      if (!another && mayBeSame(found.album, album)) return found;
    }
  }
  return std::nullopt;
}

Song Library::load(const LibrarySong& song, const std::optional<std::string>& language) const {
  const SongFiles& files = song.files;
  const std::string& wanted = language ? *language : language_;
  LyricFile lyrics = readLyricFile(files.lyrics, wanted);
  std::set<std::string> languages = std::move(lyrics.languages);
  // The one that is taken where nobody has chosen.
  std::string preferred;
  if (!languages.empty()) {
    preferred = *std::ranges::min_element(
        languages, {}, [&](const std::string& one) { return remoteness(one, language_); });
  }
  fs::path path = language ? fs::path() : files.translation;
  for (const TranslationFile& beside : files.translations) {
    languages.insert(beside.language);
    if (beside.path == files.translation) preferred = beside.language;
    if (language && path.empty() && beside.language == *language) path = beside.path;
  }
  std::optional<LyricFile> translation;
  if (!path.empty()) translation = readLyricFile(path, wanted);
  Song result = assemble(std::move(lyrics), std::move(translation));
  result.languages.assign(languages.begin(), languages.end());
  result.language = language.value_or(preferred);
  result.open = result.language == preferred;
  return result;
}

std::uint64_t Library::version(const SongFiles& files) {
  std::uint64_t hash = basis;
  mixFile(hash, files.lyrics);
  mixFile(hash, files.lyrics.parent_path());
  if (!files.translation.empty()) mixFile(hash, files.translation);
  return hash;
}

}  // namespace vellora::companion
