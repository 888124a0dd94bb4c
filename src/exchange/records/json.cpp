#include "exchange/records/json.h"

#include <cstdint>
#include <tuple>
#include <utility>
#include <variant>
#include <vector>

#include "exchange/records/json_tree.h"
#include "exchange/records/json_value.h"

namespace vellora {

namespace {

// One field of a record: its key, its place, and whether a file may leave it out.
template <typename Record, typename Value>
struct Field {
  constexpr Field(std::string_view key_, Value Record::*place_, bool mayBeAbsent_ = false)
      : key(key_), place(place_), mayBeAbsent(mayBeAbsent_) {}

  std::string_view key;
  Value Record::*place;
  bool mayBeAbsent;
};

constexpr bool mayBeAbsent = true;

template <typename Record>
struct Format;

// The file formats: every field in the order in which it is written.

template <>
struct Format<OverlayLine> {
  static constexpr std::tuple fields{
      Field{"source", &OverlayLine::source},
      Field{"translation", &OverlayLine::translation},
  };
};

template <>
struct Format<OverlaySnapshot> {
  static constexpr std::tuple fields{
      Field{"version", &OverlaySnapshot::version},
      Field{"updatedAt", &OverlaySnapshot::updatedAt},
      Field{"enabled", &OverlaySnapshot::enabled},
      Field{"musicTitle", &OverlaySnapshot::musicTitle},
      Field{"musicArtist", &OverlaySnapshot::musicArtist},
      Field{"fontSize", &OverlaySnapshot::fontSize},
      Field{"verticalOffset", &OverlaySnapshot::verticalOffset},
      Field{"lines", &OverlaySnapshot::lines},
  };
};

template <>
struct Format<NowPlayingTrack> {
  static constexpr std::tuple fields{
      Field{"version", &NowPlayingTrack::version},
      Field{"updatedAt", &NowPlayingTrack::updatedAt},
      Field{"title", &NowPlayingTrack::title},
      Field{"artist", &NowPlayingTrack::artist},
      Field{"album", &NowPlayingTrack::album},
      Field{"position", &NowPlayingTrack::position, mayBeAbsent},
      Field{"playing", &NowPlayingTrack::playing, mayBeAbsent},
  };
};

template <>
struct Format<SyncRequest> {
  static constexpr std::tuple fields{
      Field{"updatedAt", &SyncRequest::updatedAt},
  };
};

template <>
struct Format<MusicCommand> {
  static constexpr std::tuple fields{
      Field{"requestedAt", &MusicCommand::requestedAt},
      Field{"action", &MusicCommand::action},
      Field{"title", &MusicCommand::title},
      Field{"artist", &MusicCommand::artist},
      Field{"position", &MusicCommand::position},
  };
};

template <>
struct Format<OverlayStatus> {
  static constexpr std::tuple fields{
      Field{"message", &OverlayStatus::message},
      Field{"stopped", &OverlayStatus::stopped},
  };
};

bool append(std::string& out, bool value) { return appendJson(out, value); }
bool append(std::string& out, std::int64_t value) { return appendJson(out, value); }
bool append(std::string& out, double value) { return appendJson(out, value); }
bool append(std::string& out, const std::string& value) { return appendJson(out, value); }
bool append(std::string& out, MusicCommand::Action value) {
  return appendJson(out, MusicCommand::name(value));
}

bool append(std::string& out, const OverlayLines& lines);

template <typename Record>
bool appendRecord(std::string& out, const Record& record) {
  char separator = '{';
  const auto appendField = [&](const auto& field) {
    out += std::exchange(separator, ',');
    return appendJson(out, field.key) && append(out += ':', record.*field.place);
  };
  const bool complete = std::apply(
      [&](const auto&... field) { return (appendField(field) && ...); }, Format<Record>::fields);
  out += '}';
  return complete;
}

bool append(std::string& out, const OverlayLines& lines) {
  out += '[';
  for (const OverlayLine& line : lines) {
    if (&line != &lines.front()) out += ',';
    if (!appendRecord(out, line)) return false;
  }
  out += ']';
  return true;
}

template <typename Record>
std::optional<std::string> encodeRecord(const Record& record) {
  std::string out;
  if (!appendRecord(out, record)) return std::nullopt;
  return out;
}

template <typename Value>
bool read(JsonValue& json, Value& field) {
  return readJson(json, field);
}

bool read(JsonValue& json, MusicCommand::Action& field) {
  const auto* const name = std::get_if<std::string>(&json.value);
  const auto action = name != nullptr ? MusicCommand::actionNamed(*name) : std::nullopt;
  field = action.value_or(MusicCommand::Action::play);
  return action.has_value();
}

// The lines themselves are taken one by one, as they are parsed.
bool read(JsonValue& json, OverlayLines&) { return std::holds_alternative<JsonArray>(json.value); }

template <typename Record>
bool readRecord(JsonValue& json, Record& record) {
  auto* const object = std::get_if<JsonObject>(&json.value);
  if (object == nullptr) return false;
  const auto readField = [&](const auto& field) {
    JsonValue* const value = object->find(field.key);
    const bool absent = value == nullptr || std::holds_alternative<std::nullptr_t>(value->value);
    return absent ? field.mayBeAbsent : read(*value, record.*field.place);
  };
  return std::apply([&](const auto&... field) { return (readField(field) && ...); },
                    Format<Record>::fields);
}

}  // namespace

std::optional<std::string> encode(const OverlayLine& record) { return encodeRecord(record); }
std::optional<std::string> encode(const OverlaySnapshot& record) { return encodeRecord(record); }
std::optional<std::string> encode(const NowPlayingTrack& record) { return encodeRecord(record); }
std::optional<std::string> encode(const SyncRequest& record) { return encodeRecord(record); }
std::optional<std::string> encode(const MusicCommand& record) { return encodeRecord(record); }
std::optional<std::string> encode(const OverlayStatus& record) { return encodeRecord(record); }

std::optional<OverlaySnapshot> decodeSnapshot(std::string_view json, JsonPlace& linesPlace) {
  std::vector<OverlayLine> lines;
  JsonElements elements{
      .key = "lines",
      .take = [&lines](JsonValue& line) { return readRecord(line, lines.emplace_back()); },
      .place = {}};
  std::optional<JsonValue> tree = parseJson(json, elements);
  OverlaySnapshot snapshot;
  linesPlace = {};
  if (!tree || !readRecord(*tree, snapshot)) return std::nullopt;
  lines.shrink_to_fit();
  snapshot.lines = std::move(lines);
  linesPlace = elements.place;
  return snapshot;
}

template <>
std::optional<OverlaySnapshot> decode<OverlaySnapshot>(std::string_view json) {
  JsonPlace ignored;
  return decodeSnapshot(json, ignored);
}

template <typename Record>
std::optional<Record> decode(std::string_view json) {
  std::optional<JsonValue> tree = parseJson(json);
  Record record;
  if (!tree || !readRecord(*tree, record)) return std::nullopt;
  return record;
}

template std::optional<OverlayLine> decode<OverlayLine>(std::string_view);
template std::optional<NowPlayingTrack> decode<NowPlayingTrack>(std::string_view);
template std::optional<SyncRequest> decode<SyncRequest>(std::string_view);
template std::optional<MusicCommand> decode<MusicCommand>(std::string_view);
template std::optional<OverlayStatus> decode<OverlayStatus>(std::string_view);

}  // namespace vellora
