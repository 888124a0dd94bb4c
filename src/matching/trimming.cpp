#include "matching/trimming.h"

#include <algorithm>
#include <array>

#include "base/utf8.h"

namespace vellora {

namespace {

struct Range {
  char32_t first;
  char32_t last;
};

// Zs, the line and paragraph separators, the controls that end lines or tabulate, and U+200B, which
// the player's platform counts in.
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

}  // namespace

bool OverlayMatching::isWhitespaceOrNewline(char32_t character) {
  return std::ranges::any_of(whitespace, [character](const Range& range) {
    return character >= range.first && character <= range.last;
  });
}

std::string_view OverlayMatching::trimmed(std::string_view text) {
  std::size_t begin = text.size();
  std::size_t end = 0;
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t here = at;
    if (isWhitespaceOrNewline(nextCharacter(text, at))) continue;
    if (end == 0) begin = here;
    end = at;
  }
  return end == 0 ? std::string_view() : text.substr(begin, end - begin);
}

}  // namespace vellora
