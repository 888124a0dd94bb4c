#include "exchange/snapshot_reader.h"

#include <utility>

#include "base/files.h"
#include "exchange/records/json.h"

namespace vellora {

std::shared_ptr<const OverlaySnapshot> SnapshotReader::read(const std::filesystem::path& path) {
  std::optional<std::string> bytes = readWholeFile(path);
  if (!bytes) return nullptr;
  if (bytes != bytes_) {
    std::optional<OverlaySnapshot> decoded = decode<OverlaySnapshot>(*bytes);
    snapshot_ = decoded ? std::make_shared<const OverlaySnapshot>(*std::move(decoded)) : nullptr;
    bytes_ = std::move(bytes);
  }
  return snapshot_;
}

}  // namespace vellora
