// Folding without regard to case, diacritical marks and width, character by character. ICU has no
// such folding; it supplies the properties, the decompositions and the case folding (Unicode
// Character Database) from which the rule below is made.
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include "base/utf8.h"
#include "platform/linux/text/icu_text.h"
#include "platform/text_services.h"

namespace vellora::TextServices {

namespace {

// Latin, Greek, Coptic and Cyrillic with the marks made for them end here; marks lose their meaning
// in these scripts only.
constexpr char32_t firstBeyondMarkedScripts = 0x510;

bool isSkinTone(char32_t character) { return character >= 0x1F3FB && character <= 0x1F3FF; }

// Marks and what else extends a character to the left. The joiner is never one here, whatever a
// release of Unicode makes of it.
bool isExtender(char32_t character) {
  constexpr char32_t zeroWidthJoiner = 0x200D;
  if (character < 0x300 || character == zeroWidthJoiner) return false;
  return u_hasBinaryProperty(static_cast<UChar32>(character), UCHAR_GRAPHEME_EXTEND) ||
         isSkinTone(character);
}

// A full-width or half-width form made ordinary, where that is one character.
UChar32 withoutWidth(UChar32 character) {
  if (character < 0xFF00 || character > 0xFFEF) return character;
  icu::UnicodeString parts;
  if (!normalizer(Normalization::compatibilityDecomposed).getDecomposition(character, parts)) {
    return character;
  }
  return parts.countChar32() == 1 ? parts.char32At(0) : character;
}

// The letter below the marks of Latin, Greek and Cyrillic letters.
UChar32 withoutMarks(UChar32 character) {
  if (u_getIntPropertyValue(character, UCHAR_NFD_QUICK_CHECK) == UNORM_YES) return character;
  icu::UnicodeString parts;
  if (!normalizer(Normalization::decomposed).getDecomposition(character, parts)) return character;
  const UChar32 first = parts.char32At(0);
  return static_cast<char32_t>(first) < firstBeyondMarkedScripts ? first : character;
}

struct FoldedBase {
  char32_t first;  // of what was appended
  bool changed;
};

FoldedBase appendFoldedBase(std::string& result, char32_t base) {
  if (base < 0x80) {
    const char32_t lower = base >= U'A' && base <= U'Z' ? base + (U'a' - U'A') : base;
    result.push_back(static_cast<char>(lower));
    return {lower, lower != base};
  }
  const UChar32 plain = withoutMarks(withoutWidth(static_cast<UChar32>(base)));
  if (!u_hasBinaryProperty(plain, UCHAR_CASED)) {
    appendCharacter(result, static_cast<char32_t>(plain));
    return {static_cast<char32_t>(plain), static_cast<char32_t>(plain) != base};
  }
  icu::UnicodeString folded(plain);
  folded.foldCase(U_FOLD_CASE_DEFAULT);
  appendText(result, folded);
  const auto first = static_cast<char32_t>(folded.char32At(0));
  return {first, first != base || folded.countChar32() != 1};
}

// Appends the extenders of a character that keeps them.
void appendExtenders(std::string& result, std::string_view extenders, bool baseChanged) {
  std::size_t at = 0;
  const char32_t first = nextCharacter(extenders, at);
  if (!baseChanged && first < firstBeyondMarkedScripts) extenders.remove_prefix(at);
  appendText(result, normalized(Normalization::decomposed, extenders));
}

}  // namespace

std::string folded(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const FoldedBase base = appendFoldedBase(result, nextCharacter(text, at));
    const std::size_t begin = at;
    for (std::size_t next = at; at < text.size(); at = next) {
      if (!isExtender(nextCharacter(text, next))) break;
    }
    if (at > begin && base.first >= firstBeyondMarkedScripts) {
      appendExtenders(result, text.substr(begin, at - begin), base.changed);
    }
  }
  return result;
}

}  // namespace vellora::TextServices
