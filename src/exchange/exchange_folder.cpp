#include "exchange/exchange_folder.h"

#include <algorithm>
#include <system_error>

namespace vellora {

namespace fs = std::filesystem;

fs::path absoluteLocation(std::string_view path) {
  fs::path location(path.empty() ? std::string_view(".") : path);
  if (location.is_absolute()) return location;
  std::error_code error;
  const fs::path folder = fs::current_path(error);
  return error ? location : folder / location;
}

SnapshotLocation snapshotLocation(const std::vector<std::string>& arguments) {
  const auto option = std::find(arguments.begin(), arguments.end(), "--snapshot");
  if (option == arguments.end() || option + 1 == arguments.end()) return std::nullopt;
  return absoluteLocation(*(option + 1));
}

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
