#include "companion/lyrics/language_lookup.h"

#include <algorithm>
#include <string>

#include "companion/song/text.h"

namespace vellora::companion {
namespace {

// The tag's first part up to a hyphen, which is taken off it.
std::string nextPart(std::string_view& tag) {
  const std::size_t hyphen = std::min(tag.find('-'), tag.size());
  std::string part = lowerCase(tag.substr(0, hyphen));
  tag.remove_prefix(std::min(hyphen + 1, tag.size()));
  return part;
}

}  // namespace

int remoteness(std::string_view language, std::string_view wanted) {
  if (wanted.empty()) return 0;
  if (nextPart(language) != nextPart(wanted)) return anotherLanguage;
  while (!wanted.empty() && !language.empty()) {
    std::string_view other = language;
    std::string_view asked = wanted;
    if (nextPart(other) != nextPart(asked)) break;
    language = other;
    wanted = asked;
  }
  const auto dropped = std::ranges::count(wanted, '-') + (wanted.empty() ? 0 : 1);
  return 2 * static_cast<int>(dropped) + (language.empty() ? 0 : 1);
}

}  // namespace vellora::companion
