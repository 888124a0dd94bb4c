#include <cmath>
#include <optional>

#include "exchange/records/json.h"
#include "fuzz/fuzz_input.h"
#include "fuzz/fuzz_targets.h"

namespace vellora {

namespace {

// What is read can be written, and reads back the same.
template <typename Record>
std::optional<Record> readBothWays(std::string_view json) {
  std::optional<Record> record = decode<Record>(json);
  if (!record) return record;
  const auto written = encode(*record);
  require(written.has_value(), "a decoded record can be encoded");
  const auto again = decode<Record>(*written);
  require(again.has_value(), "an encoded record can be decoded");
  require(encode(*again) == written, "an encoded record decodes to the same record");
  if constexpr (requires { *again == *record; }) {
    require(*again == *record, "equal records after a journey");
  }
  return record;
}

// A predicate's window: not before `time` - 1, and before `time` + `longest`.
bool isWithin(double time, double now, double longest) {
  return now - time < longest && time - 1.0 <= now;
}

}  // namespace

void fuzzRecords(std::string_view bytes) {
  FuzzInput input(bytes);
  const std::size_t kind = input.below(6);
  const double now = input.number();
  const std::string_view json = input.rest();
  if (kind == 0) {
    readBothWays<OverlayLine>(json);
  } else if (kind == 1) {
    if (const auto record = readBothWays<OverlaySnapshot>(json)) {
      require(record->isUsable(now) ==
                  (record->version == 1 && record->enabled && isWithin(record->updatedAt, now, 6)),
              "a usable snapshot");
    }
  } else if (kind == 2) {
    if (const auto record = readBothWays<NowPlayingTrack>(json)) {
      const bool usable =
          record->version == 1 && !record->title.empty() && isWithin(record->updatedAt, now, 8);
      require(record->isUsable(now) == usable, "a usable track");
      const auto position = record->playbackTime(now);
      require(position.has_value() == usable, "a usable track's position");
      if (usable) require(!(*position < record->position), "a position that does not run back");
    }
  } else if (kind == 3) {
    if (const auto record = readBothWays<SyncRequest>(json)) {
      require(record->isActive(now) == isWithin(record->updatedAt, now, 25), "an active request");
    }
  } else if (kind == 4) {
    if (const auto record = readBothWays<MusicCommand>(json)) {
      require(record->isFresh(now) == isWithin(record->requestedAt, now, 20), "a fresh command");
    }
  } else {
    readBothWays<OverlayStatus>(json);
  }
}

}  // namespace vellora
