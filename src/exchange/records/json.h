#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "exchange/records/json_tree.h"
#include "exchange/records/records.h"

namespace vellora {

// Records to and from JSON, one object a file. Keys are the field names. Written compactly with
// every field in declaration order and "/" as "\/"; encoding fails, with no text at all, when a
// number is not finite. Read strictly (RFC 8259): unknown keys are ignored, the first of repeated
// keys counts, a required key that is missing, null or of another type fails the whole record. Any
// thread.
std::optional<std::string> encode(const OverlaySnapshot& record);
std::optional<std::string> encode(const NowPlayingTrack& record);
std::optional<std::string> encode(const SyncRequest& record);
std::optional<std::string> encode(const MusicCommand& record);
std::optional<std::string> encode(const OverlayStatus& record);
std::optional<std::string> encode(const OverlayLine& record);

// `decode<Record>(bytes)` for each of the six records; nothing where the bytes are no such record.
template <typename Record>
std::optional<Record> decode(std::string_view json);

template <>
std::optional<OverlaySnapshot> decode<OverlaySnapshot>(std::string_view json);

// decode<OverlaySnapshot>, with the place in the text where the array stands that the lines were
// read from; empty where there is no snapshot.
std::optional<OverlaySnapshot> decodeSnapshot(std::string_view json, JsonPlace& linesPlace);

extern template std::optional<OverlayLine> decode<OverlayLine>(std::string_view);
extern template std::optional<NowPlayingTrack> decode<NowPlayingTrack>(std::string_view);
extern template std::optional<SyncRequest> decode<SyncRequest>(std::string_view);
extern template std::optional<MusicCommand> decode<MusicCommand>(std::string_view);
extern template std::optional<OverlayStatus> decode<OverlayStatus>(std::string_view);

}  // namespace vellora
