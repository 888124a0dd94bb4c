#include "companion/translator/translation_cache.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <system_error>
#include <tuple>
#include <utility>

#include <fmt/format.h>

#include "base/files.h"

namespace vellora::companion {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view ending = ".tsv";
constexpr std::string_view lastLine = "end\n";

// What tells one text, command and pair of languages from all others; the file begins with it.
std::string headOf(const TranslationManner& manner, std::size_t lines) {
  return fmt::format("vellora translations 1\n{}\n{}\n{}\n{}\n", manner.command, manner.from,
                     manner.to, lines);
}

// FNV-1a over bytes.
std::string fileNameOf(const std::string& head, const std::vector<std::string>& lines) {
  std::uint64_t hash = 0xCBF29CE484222325U;
  const auto take = [&hash](std::string_view text) {
    for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3U;
    hash = (hash ^ 0xFFU) * 0x100000001B3U;
  };
  take(head);
  for (const std::string& line : lines) take(line);
  return fmt::format("{:016x}{}", hash, ending);
}

}  // namespace

TranslationCache::TranslationCache(fs::path folder, std::size_t most)
    : folder_(std::move(folder)), most_(most) {
  if (!folder_.empty()) removeAbandonedFiles(folder_);
}

std::optional<std::vector<std::string>> TranslationCache::find(
    const TranslationManner& manner, const std::vector<std::string>& lines) const {
  if (folder_.empty()) return std::nullopt;
  const std::string head = headOf(manner, lines.size());
  const fs::path path = folder_ / fileNameOf(head, lines);
  const auto bytes = readWholeFile(path);
  if (!bytes || !bytes->starts_with(head)) return std::nullopt;
  std::string_view rest = std::string_view(*bytes).substr(head.size());
  std::vector<std::string> translations;
  for (const std::string& line : lines) {
    const std::size_t end = rest.find('\n');
    if (end == std::string_view::npos || !rest.starts_with(line + "\t")) return std::nullopt;
    translations.emplace_back(rest.substr(line.size() + 1, end - line.size() - 1));
    rest.remove_prefix(end + 1);
  }
  if (rest != lastLine) return std::nullopt;
  std::error_code ignored;
  fs::last_write_time(path, fs::file_time_type::clock::now(), ignored);
  return translations;
}

void TranslationCache::keep(const TranslationManner& manner, const std::vector<std::string>& lines,
                            const std::vector<std::string>& translations) const {
  if (folder_.empty() || lines.size() != translations.size()) return;
  if (makePrivateFolder(folder_)) return;
  const std::string head = headOf(manner, lines.size());
  std::string text = head;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    text.append(lines[i]).append("\t").append(translations[i]).append("\n");
  }
  writeFileAtomically(folder_ / fileNameOf(head, lines), text.append(lastLine));
  makeRoom();
}

void TranslationCache::makeRoom() const {
  std::vector<std::pair<fs::file_time_type, fs::path>> files;
  std::error_code error;
  for (fs::directory_iterator entry(folder_, error); !error && entry != fs::directory_iterator();
       entry.increment(error)) {
    std::error_code failure;
    const auto used = entry->last_write_time(failure);
    if (!failure && entry->path().extension() == ending) files.emplace_back(used, entry->path());
  }
  if (files.size() <= most_) return;
  std::ranges::sort(files);
  files.resize(files.size() - most_);
  for (const auto& [used, path] : files) removeFile(path);
}

}  // namespace vellora::companion
