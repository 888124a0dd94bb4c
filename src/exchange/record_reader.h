#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "base/files.h"
#include "exchange/records/json.h"
#include "exchange/records/snapshot_decoder.h"

namespace vellora {

// Decodes what a file holds, one text after the other: `decode(before, now)` is
// decode<Record>(now), with the text of the last call, empty at the first.
template <typename Record>
struct RecordDecoder {
  std::optional<Record> decode(std::string_view, std::string_view now) {
    return vellora::decode<Record>(now);
  }
};
template <>
struct RecordDecoder<OverlaySnapshot> : SnapshotDecoder {};

// Reads a file that is asked for far more often than it is written: reads it at each call, but
// decodes it only when its bytes are others than those decoded last. Main thread.
template <typename Record>
class RecordReader {
 public:
  // What the file holds now, fresh or not; null where it cannot be read or holds no such record.
  // The result stays as it is when a later call finds another.
  std::shared_ptr<const Record> read(const std::filesystem::path& path) {
    std::string bytes;
    switch (readWholeFileAgain(path, bytes_, bytes)) {
      case FileReading::failed:
        return nullptr;
      case FileReading::asBefore:
        return record_;
      case FileReading::other:
        break;
    }
    std::optional<Record> decoded = decoder_.decode(bytes_, bytes);
    record_ = decoded ? std::make_shared<const Record>(*std::move(decoded)) : nullptr;
    bytes_ = std::move(bytes);
    return record_;
  }

 private:
  std::string bytes_;  // no record is decoded from an empty text
  RecordDecoder<Record> decoder_;
  std::shared_ptr<const Record> record_;  // what `bytes_` decode to
};

}  // namespace vellora
