#include "companion/service/lrclib.h"

#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>
#include <variant>

#include "companion/library/song_names.h"
#include "companion/lyrics/plain.h"
#include "companion/service/server_address.h"
#include "companion/song/lrc.h"
#include "companion/song/text.h"
#include "exchange/records/json_value.h"

namespace vellora::companion {
namespace {

// The member's value; false where it is missing or of another type, such as null.
template <typename Value>
bool readMember(JsonObject& object, std::string_view name, Value& to) {
  JsonValue* const member = object.find(name);
  return member != nullptr && readJson(*member, to);
}

bool hasWords(const LyricFile& file) {
  return std::ranges::any_of(file.lines, [](const FileLine& line) { return !line.text.empty(); });
}

// Services have records with lyrics that are none, and lines without times for synced ones.
void settleLyrics(LyricsRecord& record) {
  const LyricFile synced = readLrc({}, record.synced);
  if (!hasWords(readPlain({}, record.plain))) record.plain.clear();
  if (synced.timed() && hasWords(synced)) return;
  const std::string text = std::exchange(record.synced, {});
  if (record.plain.empty() && hasWords(synced)) record.plain = text;
}

std::optional<LyricsRecord> recordOf(JsonValue& json) {
  auto* const object = std::get_if<JsonObject>(&json.value);
  LyricsRecord record;
  if (object == nullptr || !readMember(*object, "trackName", record.title)) return std::nullopt;
  readMember(*object, "artistName", record.artist);
  for (std::string* name : {&record.title, &record.artist}) {
    name->resize(cut(*name, longestText).size());
  }
  double duration = 0;
  if (readMember(*object, "duration", duration) && duration > 0) record.duration = duration;
  readMember(*object, "instrumental", record.instrumental);
  readMember(*object, "syncedLyrics", record.synced);
  readMember(*object, "plainLyrics", record.plain);
  settleLyrics(record);
  return record;
}

double remoteness(const LyricsRecord& record, const WantedSong& song) {
  return record.duration && song.duration ? std::abs(*record.duration - *song.duration) : 0;
}

int worth(const LyricsRecord& record) {
  if (!record.synced.empty()) return 3;
  if (!record.plain.empty()) return 2;
  return record.instrumental ? 1 : 0;
}

}  // namespace

std::string getRequest(const WantedSong& song) {
  std::string request =
      "/api/get?track_name=" + queryValue(song.title) + "&artist_name=" + queryValue(song.artist);
  if (!song.album.empty()) request += "&album_name=" + queryValue(song.album);
  if (song.duration) request += "&duration=" + std::to_string(std::lround(*song.duration));
  return request;
}

std::string searchRequest(const WantedSong& song) {
  return "/api/search?track_name=" + queryValue(plainTitle(song.title)) +
         "&artist_name=" + queryValue(song.artist);
}

bool isObject(std::string_view json) {
  const auto value = parseJson(json);
  return value && std::holds_alternative<JsonObject>(value->value);
}

std::optional<LyricsRecord> readRecord(std::string_view json) {
  auto value = parseJson(json);
  return value ? recordOf(*value) : std::nullopt;
}

std::optional<std::vector<LyricsRecord>> readRecords(std::string_view json) {
  auto value = parseJson(json);
  auto* const array = value ? std::get_if<JsonArray>(&value->value) : nullptr;
  if (array == nullptr) return std::nullopt;
  std::vector<LyricsRecord> records;
  for (JsonValue& element : *array) {
    if (records.size() == mostRecords) break;
    if (auto record = recordOf(element)) records.push_back(*std::move(record));
  }
  return records;
}

bool isOf(const LyricsRecord& record, const WantedSong& song) {
  if (remoteness(record, song) > durationTolerance) return false;
  SongNames names;
  for (const std::string& spelling : {record.title, plainTitle(record.title)}) {
    names.tags = keysOf(spelling, record.artist);
    for (const std::string& wanted : {song.title, plainTitle(song.title)}) {
      if (likeness(names, keysOf(wanted, song.artist)) > 0) return true;
    }
  }
  return false;
}

const LyricsRecord* bestOf(const std::vector<LyricsRecord>& records, const WantedSong& song) {
  const LyricsRecord* best = nullptr;
  const std::string title = keysOf(song.title, {}).title;
  const auto rank = [&](const LyricsRecord& record) {
    return std::tuple(worth(record), keysOf(record.title, {}).title == title,
                      -remoteness(record, song));
  };
  for (const LyricsRecord& record : records) {
    if (worth(record) == 0 || !isOf(record, song)) continue;
    if (best == nullptr || rank(record) > rank(*best)) best = &record;
  }
  return best;
}

}  // namespace vellora::companion
