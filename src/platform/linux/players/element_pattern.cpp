#include "platform/linux/players/element_pattern.h"

#include <algorithm>
#include <string_view>

#include <glib.h>

namespace vellora {

namespace {

constexpr std::string_view blanks = " \t\n\r\f";  // those of HTML

bool hasFittingWord(const std::vector<std::string>& globs, std::string_view words) {
  while (!words.empty()) {
    const std::size_t end = std::min(words.find_first_of(blanks), words.size());
    const std::string word(words.substr(0, end));
    const auto fitsWord = [&word](const std::string& glob) { return fitsGlob(glob, word); };
    if (!word.empty() && std::ranges::any_of(globs, fitsWord)) return true;
    words.remove_prefix(std::min(end + 1, words.size()));
  }
  return false;
}

}  // namespace

bool ElementPattern::isEmpty() const {
  return roles.empty() && names.empty() && classes.empty() && ids.empty();
}

bool fits(const ElementPattern& pattern, const ElementTraits& element) {
  const auto fitsId = [&element](const std::string& glob) { return fitsGlob(glob, element.id); };
  return (pattern.roles.empty() || std::ranges::count(pattern.roles, element.role) > 0) &&
         (pattern.names.empty() || std::ranges::count(pattern.names, element.name) > 0) &&
         (pattern.classes.empty() || hasFittingWord(pattern.classes, element.classes)) &&
         (pattern.ids.empty() || std::ranges::any_of(pattern.ids, fitsId));
}

bool fitsGlob(const std::string& glob, const std::string& text) {
  return g_pattern_match_simple(glob.c_str(), text.c_str()) != FALSE;
}

}  // namespace vellora
