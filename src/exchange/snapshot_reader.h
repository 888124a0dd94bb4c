#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "exchange/records/records.h"

namespace vellora {

// Reads the snapshot's file, which is asked for far more often than it is written: the file is read
// at each call, but decoded only when its bytes are others than those decoded last. Main thread.
class SnapshotReader {
 public:
  // What the file holds now, fresh or not; null where it cannot be read or holds no snapshot. The
  // result stays as it is when a later call finds another.
  std::shared_ptr<const OverlaySnapshot> read(const std::filesystem::path& path);

 private:
  std::optional<std::string> bytes_;
  std::shared_ptr<const OverlaySnapshot> snapshot_;  // what `bytes_` decode to
};

}  // namespace vellora
