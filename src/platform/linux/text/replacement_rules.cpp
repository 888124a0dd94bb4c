#include "platform/linux/text/replacement_rules.h"

#include <algorithm>

#include <unicode/uchar.h>

#include "base/utf8.h"

namespace vellora {

namespace {

constexpr std::size_t mostBytes = 0xFFFF;  // of a rule
constexpr std::size_t mostRules = 0xFFFF;
constexpr char32_t highestFirst = 0xFFFF;

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
  std::vector<Written> all;
  while (!written.empty()) {
    const std::size_t end = std::min(written.find('\n'), written.size());
    const std::optional<Written> rule = rules.add(written.substr(0, end));
    if (!rule) return std::nullopt;
    all.push_back(*rule);
    written.remove_prefix(std::min(end + 1, written.size()));
  }
  std::ranges::stable_sort(all, {}, &Written::first);
  if (!rules.arrange(all)) return std::nullopt;
  return rules;
}

// A line as a rule; nothing where it is none.
std::optional<ReplacementRules::Written> ReplacementRules::add(std::string_view line) {
  constexpr std::string_view becomes = " > ";
  if (!line.ends_with(';')) return std::nullopt;
  line.remove_suffix(1);
  const std::size_t middle = line.find(becomes);
  if (middle == std::string_view::npos || line.size() > mostBytes) return std::nullopt;
  const std::string_view piece = line.substr(0, middle);
  const std::string_view replacement = line.substr(middle + becomes.size());
  if (!isLiteral(piece) || !isLiteral(replacement)) return std::nullopt;
  std::size_t at = 0;
  const char32_t first = nextCharacter(piece, at);
  const std::string_view rest = piece.substr(at);
  const Rule rule{static_cast<std::uint32_t>(texts_.size()),
                  static_cast<std::uint16_t>(rest.size()),
                  static_cast<std::uint16_t>(replacement.size())};
  texts_ += rest;
  texts_ += replacement;
  return Written{first, rule};
}

// Takes them, sorted by their first characters; false where there are none or too many.
bool ReplacementRules::arrange(const std::vector<Written>& written) {
  if (written.empty() || written.size() > mostRules || written.back().first > highestFirst) {
    return false;
  }
  lowest_ = written.front().first;
  begins_.reserve(written.back().first - lowest_ + 2);
  rules_.reserve(written.size());
  const auto end = [this] { return static_cast<std::uint16_t>(rules_.size()); };
  for (const Written& each : written) {
    begins_.resize(each.first - lowest_ + 1, end());
    rules_.push_back(each.rule);
  }
  begins_.push_back(end());
  return true;
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
    const Rule* const rule = fitting(character, text.substr(at));
    if (rule == nullptr && character != replacementCharacter) continue;
    result += text.substr(kept, begin - kept);
    if (rule != nullptr) {
      at += rule->rest;
      result.append(texts_, rule->at + rule->rest, rule->replacement);
    } else {
      appendCharacter(result, character);
    }
    kept = at;
  }
  return result += text.substr(kept);
}

}  // namespace vellora
