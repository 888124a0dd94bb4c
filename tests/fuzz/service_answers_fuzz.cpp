#include <algorithm>
#include <string>
#include <vector>

#include "base/percent_encoding.h"
#include "base/utf8.h"
#include "companion/service/lrclib.h"
#include "companion/service/server_address.h"
#include "companion/song/lrc.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/fuzz_targets.h"

namespace vellora {

using namespace companion;

namespace {

void requireAddress(std::string_view text) {
  const auto address = parseServerAddress(text);
  if (!address) return;
  require(address->base.ends_with(address->name), "an address under its name");
  require(parseServerAddress(address->base) == address, "an address that is one itself");
  require(address->base.find_first_of("@?#\\ ") == address->base.npos,
          "an address without a name, a query or a fragment");
}

void requireRecord(const LyricsRecord& record, const WantedSong& song) {
  for (const std::string* text : {&record.title, &record.artist, &record.synced, &record.plain}) {
    require(isWellFormed(*text), "a record's text");
  }
  require(!record.duration || *record.duration > 0, "a duration");
  isOf(record, song);
  require(readLrc("service", record.synced).lines.size() <= mostLines,
          "as many lines as are taken");
}

}  // namespace

// What is wanted, in two pieces that end with a byte 1, and a service's answer.
void fuzzServiceAnswers(std::string_view bytes) {
  FuzzInput input(bytes);
  WantedSong song;
  song.title = wellFormed(input.takeUntil('\1'));
  song.artist = wellFormed(input.takeUntil('\1'));
  requireAddress(song.title);
  require(percentDecoded(queryValue(song.title)) == song.title, "a value that comes back");
  require(searchRequest(song).find_first_of(" #+\n") == std::string::npos, "a request");
  const std::string_view answer = input.rest();
  if (const auto record = readRecord(answer)) {
    song.duration = record->duration;
    requireRecord(*record, song);
    require(getRequest(song).find_first_of(" #+\n") == std::string::npos, "a request");
  }
  const auto records = readRecords(answer);
  if (!records) return;
  require(records->size() <= mostRecords, "as many records as are looked through");
  for (const LyricsRecord& record : *records) requireRecord(record, song);
  const LyricsRecord* const best = bestOf(*records, song);
  require(best == nullptr || isOf(*best, song), "the best record is of the song");
  require(best != nullptr || std::ranges::none_of(*records,
                                                  [&](const LyricsRecord& record) {
                                                    return !record.synced.empty() &&
                                                           isOf(record, song);
                                                  }),
          "a record of the song is found");
}

}  // namespace vellora
