#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "base/files.h"
#include "exchange/records/json.h"

namespace vellora {

// Where the snapshot file is; nothing while nobody has named one, and then no exchange file is read
// or written. Every other exchange file lies in the same folder. All locations are worked out anew
// from it at each use, so that a change of it moves all files at once.
using SnapshotLocation = std::optional<std::filesystem::path>;

// The snapshot's folder, and a file of that name in it.
std::optional<std::filesystem::path> exchangeDirectory(const SnapshotLocation& snapshot);
std::optional<std::filesystem::path> exchangeFile(const SnapshotLocation& snapshot,
                                                  std::string_view name);

// A record from a file; nothing where the file cannot be read or holds none.
template <typename Record>
std::optional<Record> readExchangeFile(const std::filesystem::path& path) {
  const std::optional<std::string> bytes = readWholeFile(path);
  return bytes ? decode<Record>(*bytes) : std::nullopt;
}

// Replaces the file by the record in one step; after a power cut no record of before counts, so
// nothing waits for the disk. False, with the old file in place, where the record
// cannot be encoded or the file cannot be written.
template <typename Record>
bool writeExchangeFile(const std::filesystem::path& path, const Record& record) {
  const std::optional<std::string> bytes = encode(record);
  return bytes && writeFileAtomically(path, *bytes, Outlives::program);
}

}  // namespace vellora
