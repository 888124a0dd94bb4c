#include "matching/trimming.h"

#include <array>

#include "base/utf8.h"

namespace vellora {

namespace {

struct Range {
  char32_t first;
  char32_t last;
};

// Zs, the line and paragraph separators, the controls that end lines or tabulate, and U+200B, which
// the player's platform counts in. In ascending order.
constexpr std::array<Range, 10> whitespace = {{{0x9, 0xD},
                                               {0x20, 0x20},
                                               {0x85, 0x85},
                                               {0xA0, 0xA0},
                                               {0x1680, 0x1680},
                                               {0x2000, 0x200B},
                                               {0x2028, 0x2029},
                                               {0x202F, 0x202F},
                                               {0x205F, 0x205F},
                                               {0x3000, 0x3000}}};

// Where the last character of a text begins, unless that is ill-formed: no other byte of UTF-8 than
// a character's later ones looks like one of these.
std::size_t lastCharacter(std::string_view text) {
  constexpr std::size_t longest = 4;
  std::size_t at = text.size() - 1;
  while (at > 0 && text.size() - at < longest &&
         (static_cast<unsigned char>(text[at]) & 0xC0U) == 0x80U) {
    --at;
  }
  return at;
}

}  // namespace

bool OverlayMatching::isWhitespaceOrNewline(char32_t character) {
  for (const Range& range : whitespace) {
    if (character <= range.last) return character >= range.first;
  }
  return false;
}

// From both ends inwards: what stands between is not looked at, however long it is.
std::string_view OverlayMatching::trimmed(std::string_view text) {
  while (!text.empty()) {
    std::size_t length = 0;
    if (!isWhitespaceOrNewline(nextCharacter(text, length))) break;
    text.remove_prefix(length);
  }
  while (!text.empty()) {
    const std::size_t last = lastCharacter(text);
    std::size_t end = last;
    if (!isWhitespaceOrNewline(nextCharacter(text, end)) || end != text.size()) break;
    text.remove_suffix(text.size() - last);
  }
  return text;
}

}  // namespace vellora
