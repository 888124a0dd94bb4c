#include "platform/linux/text/replacement_rules.h"

#include <algorithm>

#include <unicode/uchar.h>

#include "base/utf8.h"

namespace vellora {

namespace {

// Letters and punctuation mean themselves in a rule where they are not ASCII: the syntax of rules
// has no others but symbols and private characters.
bool isLiteral(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    const char32_t character = nextCharacter(text, at);
    const auto point = static_cast<UChar32>(character);
    if (character < 0x80 || !(u_isalpha(point) || u_ispunct(point))) return false;
  }
  return !text.empty();
}

}  // namespace

std::optional<ReplacementRules> ReplacementRules::parse(std::string_view written) {
  ReplacementRules rules;
  while (!written.empty()) {
    const std::size_t end = std::min(written.find('\n'), written.size());
    if (!rules.add(written.substr(0, end))) return std::nullopt;
    written.remove_prefix(std::min(end + 1, written.size()));
  }
  if (rules.byFirst_.empty()) return std::nullopt;
  return rules;
}

bool ReplacementRules::add(std::string_view line) {
  constexpr std::string_view becomes = " > ";
  if (!line.ends_with(';')) return false;
  line.remove_suffix(1);
  const std::size_t middle = line.find(becomes);
  if (middle == std::string_view::npos) return false;
  const std::string_view piece = line.substr(0, middle);
  const std::string_view replacement = line.substr(middle + becomes.size());
  if (!isLiteral(piece) || !isLiteral(replacement)) return false;
  std::size_t at = 0;
  const char32_t first = nextCharacter(piece, at);
  lowest_ = std::min(lowest_, first);
  highest_ = std::max(highest_, first);
  byFirst_[first].push_back({std::string(piece), std::string(replacement)});
  return true;
}

const ReplacementRules::Rule* ReplacementRules::fitting(char32_t first,
                                                        std::string_view text) const {
  if (first < lowest_ || first > highest_) return nullptr;
  const auto rules = byFirst_.find(first);
  if (rules == byFirst_.end()) return nullptr;
  for (const Rule& rule : rules->second) {
    if (text.starts_with(rule.piece)) return &rule;
  }
  return nullptr;
}

std::string ReplacementRules::apply(std::string_view text) const {
  std::string result;
  result.reserve(text.size());
  std::size_t kept = 0;  // up to here the text is in the result
  for (std::size_t at = 0; at < text.size();) {
    if (static_cast<unsigned char>(text[at]) < 0x80) {  // no rule begins so
      ++at;
      continue;
    }
    const std::size_t begin = at;
    const char32_t character = nextCharacter(text, at);
    const Rule* const rule = fitting(character, text.substr(begin));
    if (rule == nullptr && character != replacementCharacter) continue;
    result += text.substr(kept, begin - kept);
    if (rule != nullptr) {
      result += rule->replacement;
      at = begin + rule->piece.size();
    } else {
      appendCharacter(result, character);
    }
    kept = at;
  }
  return result += text.substr(kept);
}

}  // namespace vellora
