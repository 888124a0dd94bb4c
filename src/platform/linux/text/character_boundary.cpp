#include "platform/linux/text/character_boundary.h"

#include <cstdlib>
#include <memory>

#include <unicode/brkiter.h>
#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/uscript.h>

namespace vellora {

namespace {

bool hasNoBreakProperty(UChar32 character) {
  return u_getIntPropertyValue(character, UCHAR_GRAPHEME_CLUSTER_BREAK) == U_GCB_OTHER;
}

// The scripts to which the property Indic_Conjunct_Break of Unicode 15.1 confines the rule.
bool isConjoiningScript(UChar32 character) {
  UErrorCode error = U_ZERO_ERROR;
  switch (uscript_getScript(character, &error)) {
    case USCRIPT_BENGALI:
    case USCRIPT_DEVANAGARI:
    case USCRIPT_GUJARATI:
    case USCRIPT_MALAYALAM:
    case USCRIPT_ORIYA:
    case USCRIPT_TELUGU:
      return true;
    default:
      return false;
  }
}

bool isConjoining(UChar32 character, UIndicSyllabicCategory category) {
  return u_getIntPropertyValue(character, UCHAR_INDIC_SYLLABIC_CATEGORY) == category &&
         isConjoiningScript(character);
}

bool isConjunctExtender(UChar32 character) {
  constexpr UChar32 zeroWidthJoiner = 0x200D;
  return character == zeroWidthJoiner || u_getCombiningClass(character) != 0;
}

// Rule GB9c: a consonant, then extenders with at least one linker (a virama) among them, then a
// consonant are one character. ICU 72 does not have this rule yet, Unicode has it since 15.1.
bool joinsConsonants(const icu::UnicodeString& text, int32_t offset) {
  if (!isConjoining(text.char32At(offset), U_INSC_CONSONANT)) return false;
  bool linked = false;
  while (offset > 0) {
    offset = text.moveIndex32(offset, -1);
    const UChar32 before = text.char32At(offset);
    if (isConjoining(before, U_INSC_VIRAMA)) {
      linked = true;
    } else if (!isConjunctExtender(before)) {
      return linked && isConjoining(before, U_INSC_CONSONANT);
    }
  }
  return false;
}

// Never asked itself, only copied: what an iterator is asked changes it.
const icu::BreakIterator& prototype() {
  static const std::unique_ptr<const icu::BreakIterator> iterator = [] {
    UErrorCode error = U_ZERO_ERROR;
    std::unique_ptr<const icu::BreakIterator> made(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), error));
    if (U_FAILURE(error) || made == nullptr) std::abort();
    return made;
  }();
  return *iterator;
}

}  // namespace

bool isCharacterBoundary(const icu::UnicodeString& text, int32_t offset) {
  if (offset <= 0 || offset >= text.length()) return true;
  const UChar32 before = text.char32At(offset - 1);
  const UChar32 after = text.char32At(offset);
  if (hasNoBreakProperty(before) && hasNoBreakProperty(after)) return true;
  const std::unique_ptr<icu::BreakIterator> iterator(prototype().clone());
  iterator->setText(text);
  return iterator->isBoundary(offset) && !joinsConsonants(text, offset);
}

}  // namespace vellora
