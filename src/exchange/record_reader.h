#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "base/files.h"
#include "exchange/records/json.h"

namespace vellora {

// Reads a file that is asked for far more often than it is written: reads it at each call, but
// decodes it only when its bytes are others than those decoded last. Main thread.
template <typename Record>
class RecordReader {
 public:
  // What the file holds now, fresh or not; null where it cannot be read or holds no such record.
  // The result stays as it is when a later call finds another.
  std::shared_ptr<const Record> read(const std::filesystem::path& path) {
    std::optional<std::string> bytes = readWholeFile(path);
    if (!bytes) return nullptr;
    if (bytes != bytes_) {
      std::optional<Record> decoded = decode<Record>(*bytes);
      record_ = decoded ? std::make_shared<const Record>(*std::move(decoded)) : nullptr;
      bytes_ = std::move(bytes);
    }
    return record_;
  }

 private:
  std::optional<std::string> bytes_;
  std::shared_ptr<const Record> record_;  // what `bytes_` decode to
};

}  // namespace vellora
