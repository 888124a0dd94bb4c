#include "exchange/records/snapshot_decoder.h"

#include <string>
#include <utility>

#include "exchange/records/json.h"

namespace vellora {

namespace {

// In place of lines that are known.
constexpr std::string_view noLines = "[]";

bool standsAt(std::size_t begin, std::string_view text, std::string_view part) {
  return begin <= text.size() && text.substr(begin).starts_with(part);
}

}  // namespace

// An array ends itself. Where a parser that has read what goes before finds the snapshot's lines in
// the place of the known array, it does so whichever array stands there, and goes on behind it in
// the same way. So the text is read with an empty one in that place. What goes before may have
// changed so that the place is within a text, say, or belongs to another key: then the empty array
// is not found as the snapshot's lines, and all is decoded.
std::optional<OverlaySnapshot> SnapshotDecoder::decode(std::string_view before,
                                                       std::string_view now) {
  const std::string_view known = before.substr(place_.begin, place_.end - place_.begin);
  if (known.empty()) return decodeWhole(now);
  // Either what goes before is as long as it was, or what comes after.
  const std::size_t toEnd = before.size() - place_.begin;
  std::size_t begin = place_.begin;
  if (!standsAt(begin, now, known)) {
    if (now.size() < toEnd) return decodeWhole(now);
    begin = now.size() - toEnd;
    if (!standsAt(begin, now, known)) return decodeWhole(now);
  }

  std::string rest(now.substr(0, begin));
  rest += noLines;
  rest += now.substr(begin + known.size());
  JsonPlace place;
  std::optional<OverlaySnapshot> snapshot = decodeSnapshot(rest, place);
  if (!snapshot || place != JsonPlace{begin, begin + noLines.size()}) return decodeWhole(now);
  snapshot->lines = lines_;
  place_ = {begin, begin + known.size()};
  return snapshot;
}

std::optional<OverlaySnapshot> SnapshotDecoder::decodeWhole(std::string_view text) {
  std::optional<OverlaySnapshot> snapshot = decodeSnapshot(text, place_);
  if (snapshot) {
    lines_ = snapshot->lines;
  } else {
    lines_ = {};
    place_ = {};
  }
  return snapshot;
}

}  // namespace vellora
