#include "companion/service/lyrics_cache.h"

#include <algorithm>
#include <cmath>
#include <system_error>
#include <tuple>
#include <utility>
#include <variant>
#include <vector>

#include <fmt/format.h>

#include "base/files.h"
#include "companion/library/song_names.h"
#include "exchange/records/json_value.h"

namespace vellora::companion {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view ending = ".json";
constexpr std::size_t digits = 16;

// What tells one song of one server from all others.
std::string identityOf(const std::string& server, const WantedSong& song) {
  const SongKeys keys = keysOf(song.title, song.artist);
  const std::string seconds =
      song.duration ? std::to_string(std::lround(*song.duration)) : std::string();
  std::string identity = server;
  for (const std::string* part : {&keys.title, &keys.artist, &seconds}) {
    identity.append("\n").append(*part);
  }
  return identity;
}

// FNV-1a over bytes.
std::string fileNameOf(std::string_view identity) {
  std::uint64_t hash = 0xCBF29CE484222325U;
  for (const char c : identity) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
  return fmt::format("{:016x}{}", hash, ending);
}

bool isOurs(const fs::path& path) {
  const std::string name = path.filename().string();
  return name.size() == digits + ending.size() && name.ends_with(ending) &&
         name.find_first_not_of("0123456789abcdef") == digits;
}

std::string encoded(const std::string& identity, const KeptLyrics& kept) {
  std::string json = R"({"song":)";
  appendJson(json, std::string_view(identity));
  appendJson(json += R"(,"fetchedAt":)", kept.fetchedAt);
  appendJson(json += R"(,"instrumental":)", kept.instrumental);
  appendJson(json += R"(,"lyrics":)", std::string_view(kept.lyrics));
  return json += '}';
}

std::optional<KeptLyrics> decoded(const std::string& identity, std::string_view json) {
  auto value = parseJson(json);
  auto* const object = value ? std::get_if<JsonObject>(&value->value) : nullptr;
  if (object == nullptr) return std::nullopt;
  const auto read = [&](std::string_view name, auto& to) {
    JsonValue* const member = object->find(name);
    return member != nullptr && readJson(*member, to);
  };
  std::string song;
  KeptLyrics kept;
  const bool whole = read("song", song) && read("fetchedAt", kept.fetchedAt) &&
                     read("instrumental", kept.instrumental) && read("lyrics", kept.lyrics);
  return whole && song == identity ? std::optional(std::move(kept)) : std::nullopt;
}

}  // namespace

std::optional<fs::path> defaultLyricsCache(const Environment& environment) {
  const fs::path own = fs::path("vellora") / "lyrics";
  const auto cache = environment("XDG_CACHE_HOME");
  if (cache && fs::path(*cache).is_absolute()) return fs::path(*cache) / own;
  const auto home = environment("HOME");
  if (!home) return std::nullopt;
  std::error_code error;
  const fs::path caches = fs::path(*home) / "Library" / "Caches";
  return (fs::is_directory(caches, error) ? caches : fs::path(*home) / ".cache") / own;
}

LyricsCache::LyricsCache(fs::path folder, std::string server, CacheLimits limits)
    : folder_(std::move(folder)), server_(std::move(server)), limits_(limits) {
  if (!folder_.empty()) removeAbandonedFiles(folder_);
}

std::optional<KeptLyrics> LyricsCache::find(const WantedSong& song, double now) const {
  if (folder_.empty()) return std::nullopt;
  const std::string identity = identityOf(server_, song);
  const fs::path path = folder_ / fileNameOf(identity);
  const auto bytes = readWholeFile(path);
  auto kept = bytes ? decoded(identity, *bytes) : std::nullopt;
  if (!kept) return std::nullopt;
  const double age = now - kept->fetchedAt;
  if (kept->lyrics.empty() && (age < 0 || age > patience)) return std::nullopt;
  std::error_code ignored;
  fs::last_write_time(path, fs::file_time_type::clock::now(), ignored);
  return kept;
}

void LyricsCache::keep(const WantedSong& song, const KeptLyrics& lyrics) const {
  if (folder_.empty() || makePrivateFolder(folder_)) return;
  const std::string identity = identityOf(server_, song);
  writeFileAtomically(folder_ / fileNameOf(identity), encoded(identity, lyrics));
  makeRoom();
}

void LyricsCache::makeRoom() const {
  struct Entry {
    fs::file_time_type used;
    std::uintmax_t bytes = 0;
    fs::path path;
  };
  std::vector<Entry> entries;
  std::uintmax_t bytes = 0;
  std::error_code error;
  for (fs::directory_iterator entry(folder_, error); !error && entry != fs::directory_iterator();
       entry.increment(error)) {
    std::error_code failure;
    if (!isOurs(entry->path())) continue;
    const auto used = entry->last_write_time(failure);
    const auto size = failure ? 0 : entry->file_size(failure);
    if (failure) continue;
    bytes += size;
    entries.push_back({used, size, entry->path()});
  }
  std::size_t files = entries.size();
  if (files <= limits_.files && bytes <= limits_.bytes) return;
  std::ranges::sort(entries, [](const Entry& a, const Entry& b) {
    return std::tie(a.used, a.path) < std::tie(b.used, b.path);
  });
  for (const Entry& entry : entries) {
    if (files <= limits_.files && bytes <= limits_.bytes) return;
    removeFile(entry.path);
    --files;
    bytes -= entry.bytes;
  }
}

}  // namespace vellora::companion
