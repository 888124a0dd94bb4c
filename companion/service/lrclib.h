#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "companion/exchange/lyrics_source.h"

// The interface that LRCLIB publishes (https://lrclib.net/docs): what is asked, and what the
// answers mean. Any thread.
namespace vellora::companion {

// One of a service's records; title and artist are cut after `longestText` bytes.
struct LyricsRecord {
  std::string title;
  std::string artist;
  std::optional<double> duration;  // seconds
  bool instrumental = false;
  std::string synced;  // LRC with words and times; empty where it has none
  std::string plain;   // text; empty where it has none

  bool operator==(const LyricsRecord&) const = default;
};

// What is left of an answer with more records than anybody looks through.
inline constexpr std::size_t mostRecords = 200;
// Seconds by which a record's duration may differ from the song's.
inline constexpr double durationTolerance = 3;

// Path and query of the request for one song, and of the search for it, which leaves out what
// players add to titles.
std::string getRequest(const WantedSong& song);
std::string searchRequest(const WantedSong& song);

// The record of an answer to the first, the records of one to the second. Nothing for what is no
// such answer; records without a title are left out.
std::optional<LyricsRecord> readRecord(std::string_view json);
std::optional<std::vector<LyricsRecord>> readRecords(std::string_view json);

// Whether it is a JSON object, as all answers are but those to the search; also "not found".
bool isObject(std::string_view json);

// Whether the record is one of that song: title and artist are the same but for their spelling and
// what players add, and the durations agree where both are known.
bool isOf(const LyricsRecord& record, const WantedSong& song);

// The best of the records that are of that song: synced lyrics before plain ones, these before
// instrumental pieces; then the very title, then the nearest in duration, then the first. Null
// where there is none.
const LyricsRecord* bestOf(const std::vector<LyricsRecord>& records, const WantedSong& song);

}  // namespace vellora::companion
