// Folding without regard to case, diacritical marks and width, character by character. ICU has no
// such folding; it supplies the properties, the decompositions and the case folding (Unicode
// Character Database) from which the rule below is made.
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include "base/utf8.h"
#include "platform/linux/text/character_facts.h"
#include "platform/linux/text/icu_text.h"
#include "platform/text_services.h"

namespace vellora::TextServices {

namespace {

// Latin, Greek, Coptic and Cyrillic with the marks made for them end here; marks lose their meaning
// in these scripts only.
constexpr char32_t firstBeyondMarkedScripts = 0x510;

// The scripts from Hebrew to Burmese have no case and no width either, and what decomposes there
// does so into letters of theirs.
bool foldsToItself(char32_t character) {
  return isSyllable(character) || RememberedFacts::has(character);
}

bool isAsciiAt(std::string_view text, std::size_t at) {
  return at >= text.size() || static_cast<unsigned char>(text[at]) < 0x80;
}

char lowerAscii(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; }

bool isSkinTone(char32_t character) { return character >= 0x1F3FB && character <= 0x1F3FF; }

// Marks and what else extends a character to the left. The joiner is never one here, whatever a
// release of Unicode makes of it.
bool isExtender(char32_t character) {
  constexpr char32_t zeroWidthJoiner = 0x200D;
  if (character < 0x300 || character == zeroWidthJoiner || isSyllable(character)) return false;
  if (RememberedFacts::has(character)) return RememberedFacts::shared().of(character).extends;
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

bool decomposes(UChar32 character) {
  return u_getIntPropertyValue(character, UCHAR_NFD_QUICK_CHECK) != UNORM_YES;
}

// The letter below the marks of Latin, Greek and Cyrillic letters.
UChar32 withoutMarks(UChar32 character) {
  if (!decomposes(character)) return character;
  icu::UnicodeString parts;
  if (!normalizer(Normalization::decomposed).getDecomposition(character, parts)) return character;
  const UChar32 first = parts.char32At(0);
  return static_cast<char32_t>(first) < firstBeyondMarkedScripts ? first : character;
}

struct FoldedBase {
  char32_t first;  // of what was appended
  bool changed;
};

// Appends the character that begins at `at`, and moves that behind it.
FoldedBase appendFoldedBase(std::string& result, std::string_view text, std::size_t& at) {
  const std::size_t begin = at;
  const char32_t base = nextCharacter(text, at);
  if (foldsToItself(base)) {
    result += text.substr(begin, at - begin);
    return {base, false};
  }
  if (base < 0x80) {
    const char given = static_cast<char>(base);
    const char lower = lowerAscii(given);
    result.push_back(lower);
    return {static_cast<char32_t>(lower), lower != given};
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
  const bool isAlone = at == extenders.size();
  if (!baseChanged && first < firstBeyondMarkedScripts) {
    extenders.remove_prefix(at);
  } else if (isAlone && !decomposes(static_cast<UChar32>(first))) {
    result += extenders;  // as most are, and never ill-formed
    return;
  }
  appendText(result, normalized(Normalization::decomposed, extenders));
}

// Where the characters end that are kept as they are together with what extends them, from `at` on,
// where one begins: each by itself, or with a single extender that does not decompose.
std::size_t endOfKept(std::string_view text, std::size_t at) {
  const RememberedFacts& remembered = RememberedFacts::shared();
  std::size_t lastBase = at;
  bool isExtended = false;
  for (std::size_t next = at; at < text.size(); at = next) {
    const char32_t character = nextCharacter(text, next);
    if (isSyllable(character)) {
      lastBase = at;
      isExtended = false;
      continue;
    }
    const bool isFirst = at == lastBase;
    if (!RememberedFacts::has(character)) return !isFirst && isExtender(character) ? lastBase : at;
    const CharacterFacts facts = remembered.of(character);
    if (isFirst || !facts.extends) {
      lastBase = at;
      isExtended = false;
      continue;
    }
    if (isExtended || facts.decomposes) return lastBase;
    isExtended = true;
  }
  return at;
}

}  // namespace

std::string folded(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    if (isAsciiAt(text, at)) {
      std::size_t next = at + 1;
      if (isAsciiAt(text, next) || !isExtender(nextCharacter(text, next))) {
        result.push_back(lowerAscii(text[at++]));
        continue;
      }
    }
    if (const std::size_t end = endOfKept(text, at); end > at) {
      result += text.substr(at, end - at);
      at = end;
      continue;
    }
    const FoldedBase base = appendFoldedBase(result, text, at);
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
