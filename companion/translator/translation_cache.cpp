#include "companion/translator/translation_cache.h"

#include <string_view>
#include <utility>

#include <fmt/format.h>

namespace vellora::companion {
namespace {

constexpr std::string_view lastLine = "end\n";

// What tells one text, command and pair of languages from all others; the file begins with it.
std::string headOf(const TranslationManner& manner, std::size_t lines) {
  return fmt::format("vellora translations 1\n{}\n{}\n{}\n{}\n", manner.command, manner.from,
                     manner.to, lines);
}

// No text has that byte.
std::string identityOf(const std::string& head, const std::vector<std::string>& lines) {
  std::string identity = head;
  for (const std::string& line : lines) identity.append("\xFF").append(line);
  return identity;
}

}  // namespace

TranslationCache::TranslationCache(std::filesystem::path folder, CacheLimits limits)
    : files_(std::move(folder), ".tsv", limits) {}

std::optional<std::vector<std::string>> TranslationCache::find(
    const TranslationManner& manner, const std::vector<std::string>& lines) const {
  const std::string head = headOf(manner, lines.size());
  const auto text = files_.find(identityOf(head, lines));
  if (!text || !text->starts_with(head)) return std::nullopt;
  std::string_view rest = std::string_view(*text).substr(head.size());
  std::vector<std::string> translations;
  for (const std::string& line : lines) {
    const std::size_t end = rest.find('\n');
    if (end == std::string_view::npos || !rest.starts_with(line + "\t")) return std::nullopt;
    translations.emplace_back(rest.substr(line.size() + 1, end - line.size() - 1));
    rest.remove_prefix(end + 1);
  }
  return rest == lastLine ? std::optional(std::move(translations)) : std::nullopt;
}

void TranslationCache::keep(const TranslationManner& manner, const std::vector<std::string>& lines,
                            const std::vector<std::string>& translations) const {
  if (lines.size() != translations.size()) return;
  const std::string head = headOf(manner, lines.size());
  std::string text = head;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    text.append(lines[i]).append("\t").append(translations[i]).append("\n");
  }
  files_.keep(identityOf(head, lines), text.append(lastLine));
}

}  // namespace vellora::companion
