#include "companion/readings/scripts.h"

#include <array>
#include <cstddef>

#include <unicode/uchar.h>
#include <unicode/uscript.h>

#include "base/utf8.h"
#include "matching/trimming.h"

namespace vellora::companion {
namespace {

struct Mark {
  char32_t asian;
  std::string_view latin;
};
constexpr auto marks = std::to_array<Mark>(
    {{U'、', ", "}, {U'，', ", "}, {U'。', ". "}, {U'．', ". "}, {U'！', "! "}, {U'？', "? "},
     {U'：', ": "}, {U'；', "; "}, {U'（', " ("}, {U'）', ") "}, {U'「', " “"}, {U'」', "” "},
     {U'『', " “"}, {U'』', "” "}, {U'《', " “"}, {U'》', "” "}, {U'〈', " “"}, {U'〉', "” "},
     {U'【', " ["}, {U'】', "] "}, {U'・', " "},  {U'·', " "},   {U'〜', "~"},  {U'～', "~"},
     {U'　', " "},  {U'…', "… "}});

constexpr std::u32string_view closing = U",.!?:;)]”…";
constexpr std::u32string_view opening = U"([“";

std::string_view latinOf(char32_t character) {
  for (const Mark& mark : marks) {
    if (mark.asian == character) return mark.latin;
  }
  return {};
}

std::u32string replaced(std::string_view text) {
  constexpr char32_t firstWide = U'！';
  constexpr char32_t lastWide = U'～';
  std::u32string result;
  for (std::size_t offset = 0; offset < text.size();) {
    const char32_t character = nextCharacter(text, offset);
    const std::string_view latin = latinOf(character);
    if (latin.empty()) {
      const bool wide = character >= firstWide && character <= lastWide;
      result.push_back(wide ? character - firstWide + U'!' : character);
    }
    for (std::size_t at = 0; at < latin.size();) result.push_back(nextCharacter(latin, at));
  }
  return result;
}

}  // namespace

Scripts& Scripts::operator|=(const Scripts& more) {
  kana = kana || more.kana;
  han = han || more.han;
  hangul = hangul || more.hangul;
  other = other || more.other;
  return *this;
}

Scripts scriptsOf(std::string_view text) {
  Scripts found;
  for (std::size_t offset = 0; offset < text.size();) {
    const auto code = static_cast<UChar32>(nextCharacter(text, offset));
    UErrorCode error = U_ZERO_ERROR;
    switch (uscript_getScript(code, &error)) {
      case USCRIPT_HIRAGANA:
      case USCRIPT_KATAKANA:
        found.kana = true;
        break;
      case USCRIPT_HAN:
        found.han = true;
        break;
      case USCRIPT_HANGUL:
        found.hangul = true;
        break;
      case USCRIPT_LATIN:
      case USCRIPT_COMMON:
      case USCRIPT_INHERITED:
      case USCRIPT_UNKNOWN:
        break;
      default:
        found.other = found.other || u_isalpha(code) != 0;
    }
  }
  return found;
}

std::string withLatinMarks(std::string_view text) {
  std::string result;
  bool pending = false;  // a blank
  char32_t before = U' ';
  for (const char32_t character : replaced(text)) {
    if (character == U' ') {
      pending = true;
      continue;
    }
    const bool closes = closing.find(character) != std::u32string_view::npos;
    const bool opened = opening.find(before) != std::u32string_view::npos;
    if (pending && !closes && !opened) result.push_back(' ');
    pending = false;
    appendCharacter(result, character);
    before = character;
  }
  return std::string(OverlayMatching::trimmed(result));
}

}  // namespace vellora::companion
