#include "exchange/exchange_folder.h"

namespace vellora {

namespace fs = std::filesystem;

std::optional<fs::path> exchangeDirectory(const SnapshotLocation& snapshot) {
  if (!snapshot) return std::nullopt;
  // A slash at the end does not make an empty last component.
  const fs::path file = snapshot->has_filename() ? *snapshot : snapshot->parent_path();
  return file.parent_path();
}

std::optional<fs::path> exchangeFile(const SnapshotLocation& snapshot, std::string_view name) {
  std::optional<fs::path> location = exchangeDirectory(snapshot);
  if (location) *location /= name;
  return location;
}

}  // namespace vellora
