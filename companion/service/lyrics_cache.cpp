#include "companion/service/lyrics_cache.h"

#include <cmath>
#include <string_view>
#include <utility>
#include <variant>

#include "companion/library/song_names.h"
#include "exchange/records/json_value.h"

namespace vellora::companion {
namespace {

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

LyricsCache::LyricsCache(std::filesystem::path folder, std::string server, CacheLimits limits)
    : files_(std::move(folder), ".json", limits), server_(std::move(server)) {}

std::optional<KeptLyrics> LyricsCache::find(const WantedSong& song, double now) const {
  const std::string identity = identityOf(server_, song);
  const auto text = files_.find(identity);
  auto kept = text ? decoded(identity, *text) : std::nullopt;
  if (!kept) return std::nullopt;
  const double age = now - kept->fetchedAt;
  if (kept->lyrics.empty() && (age < 0 || age > patience)) return std::nullopt;
  return kept;
}

void LyricsCache::keep(const WantedSong& song, const KeptLyrics& lyrics) const {
  const std::string identity = identityOf(server_, song);
  files_.keep(identity, encoded(identity, lyrics));
}

}  // namespace vellora::companion
