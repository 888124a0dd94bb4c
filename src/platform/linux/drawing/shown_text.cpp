#include "platform/linux/drawing/shown_text.h"

#include <cstddef>

#include <glib.h>

#include "base/utf8.h"

namespace vellora {

namespace {

constexpr char32_t nextLine = 0x85;
constexpr char32_t lineSeparator = 0x2028;
constexpr char32_t paragraphSeparator = 0x2029;

bool endsLine(char32_t character) {
  return (character >= U'\n' && character <= U'\r') || character == nextLine ||
         character == lineSeparator || character == paragraphSeparator;
}

}  // namespace

bool isBlank(char32_t character) { return g_unichar_isspace(character) || endsLine(character); }

std::string shownText(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const char32_t character = nextCharacter(text, at);
    if (character == U'\r' && at < text.size() && text[at] == '\n') ++at;
    if (endsLine(character) && character != lineSeparator) {
      result.push_back('\n');
    } else if (character == U'\t' || !g_unichar_iscntrl(character)) {
      appendCharacter(result, character);
    }
  }
  return result;
}

std::string onOneLine(std::string_view shown) {
  std::string result;
  result.reserve(shown.size());
  std::string blanks;  // since the last character that is none
  bool lineEnded = false;
  for (std::size_t at = 0; at < shown.size();) {
    const char32_t character = nextCharacter(shown, at);
    if (isBlank(character)) {
      appendCharacter(blanks, character);
      lineEnded = lineEnded || endsLine(character);
      continue;
    }
    if (!lineEnded) {
      result += blanks;
    } else if (!result.empty()) {
      result.push_back(' ');
    }
    blanks.clear();
    lineEnded = false;
    appendCharacter(result, character);
  }
  return result;
}

}  // namespace vellora
