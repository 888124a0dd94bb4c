#include "companion/library/languages.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include <unicode/locid.h>
#include <unicode/unistr.h>

#include "matching/normalization.h"

namespace vellora::companion {
namespace {

std::string keyOfName(const icu::Locale& language, const icu::Locale& in) {
  icu::UnicodeString name;
  std::string text;
  return OverlayMatching::normalized(language.getDisplayLanguage(in, name).toUTF8String(text));
}

// Of two languages with one name the first by its code is taken.
std::map<std::string, std::string> tagsByName() {
  std::map<std::string, std::string> tags;
  for (const char* const* code = icu::Locale::getISOLanguages(); *code != nullptr; ++code) {
    const icu::Locale language(*code);
    tags.emplace(keyOfName(language, icu::Locale::getEnglish()), *code);
    tags.emplace(keyOfName(language, language), *code);
  }
  return tags;
}

}  // namespace

bool isLanguageTag(const std::string& text) {
  const auto letters = [](std::string_view part) {
    return std::ranges::all_of(part, [](char c) {
      return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
    });
  };
  std::size_t begin = 0;
  for (int part = 0;; ++part) {
    const std::size_t end = std::min(text.find_first_of("-_", begin), text.size());
    const std::string_view piece = std::string_view(text).substr(begin, end - begin);
    if (piece.size() < 2 || piece.size() > (part == 0 ? 3U : 8U) || !letters(piece)) return false;
    if (part == 0 && piece.find_first_of("0123456789") != std::string_view::npos) return false;
    if (end == text.size()) return true;
    begin = end + 1;
  }
}

std::optional<std::string> Languages::meantBy(const std::string& word) {
  if (isLanguageTag(word)) return word;
  const std::string key = OverlayMatching::normalized(word);
  if (key.empty()) return std::nullopt;
  if (tagOfName_.empty()) tagOfName_ = tagsByName();
  const auto found = tagOfName_.find(key);
  return found == tagOfName_.end() ? std::nullopt : std::optional(found->second);
}

}  // namespace vellora::companion
