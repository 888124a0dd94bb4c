#include "companion/cache/cache_folder.h"

#include <algorithm>
#include <system_error>
#include <tuple>
#include <utility>
#include <vector>

#include <fmt/format.h>

#include "base/files.h"

namespace vellora::companion {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t digits = 16;

}  // namespace

CacheFolder::CacheFolder(fs::path folder, std::string ending, CacheLimits limits)
    : folder_(std::move(folder)), ending_(std::move(ending)), limits_(limits) {
  if (!folder_.empty()) removeAbandonedFiles(folder_);
}

std::optional<std::string> CacheFolder::find(std::string_view identity) const {
  if (folder_.empty()) return std::nullopt;
  const fs::path path = fileOf(identity);
  auto text = readWholeFile(path);
  std::error_code ignored;
  if (text) fs::last_write_time(path, fs::file_time_type::clock::now(), ignored);
  return text;
}

void CacheFolder::keep(std::string_view identity, std::string_view text) const {
  if (folder_.empty() || makePrivateFolder(folder_)) return;
  writeFileAtomically(fileOf(identity), text);
  makeRoom();
}

// FNV-1a over bytes.
fs::path CacheFolder::fileOf(std::string_view identity) const {
  std::uint64_t hash = 0xCBF29CE484222325U;
  for (const char c : identity) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
  return folder_ / fmt::format("{:016x}{}", hash, ending_);
}

bool CacheFolder::isOurs(const fs::path& path) const {
  const std::string name = path.filename().string();
  return name.size() == digits + ending_.size() && name.ends_with(ending_) &&
         name.find_first_not_of("0123456789abcdef") == digits;
}

void CacheFolder::makeRoom() const {
  struct Entry {
    fs::file_time_type used;
    std::uintmax_t bytes = 0;
    fs::path path;
  };
  std::vector<Entry> entries;
  std::uintmax_t bytes = 0;
  std::error_code error;
  for (fs::directory_iterator entry(folder_, error); !error && entry != fs::directory_iterator();
       entry.increment(error)) {
    std::error_code failure;
    if (!isOurs(entry->path())) continue;
    const auto used = entry->last_write_time(failure);
    const auto size = failure ? 0 : entry->file_size(failure);
    if (failure) continue;
    bytes += size;
    entries.push_back({used, size, entry->path()});
  }
  std::size_t files = entries.size();
  if (files <= limits_.files && bytes <= limits_.bytes) return;
  std::ranges::sort(entries, [](const Entry& a, const Entry& b) {
    return std::tie(a.used, a.path) < std::tie(b.used, b.path);
  });
  for (const Entry& entry : entries) {
    if (files <= limits_.files && bytes <= limits_.bytes) return;
    removeFile(entry.path);
    --files;
    bytes -= entry.bytes;
  }
}

}  // namespace vellora::companion
