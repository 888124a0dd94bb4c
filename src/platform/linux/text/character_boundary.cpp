#include "platform/linux/text/character_boundary.h"

#include <cstdlib>
#include <memory>

#include <unicode/brkiter.h>
#include <unicode/locid.h>
#include <unicode/uchar.h>

namespace vellora {

namespace {

// Of two such neighbours no rule but GB999 speaks: whole syllables of Hangul join with single
// letters only (GB6 to GB8).
bool standsAlone(UChar32 character) {
  switch (u_getIntPropertyValue(character, UCHAR_GRAPHEME_CLUSTER_BREAK)) {
    case U_GCB_OTHER:
    case U_GCB_LV:
    case U_GCB_LVT:
      return true;
    default:
      return false;
  }
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

bool standAlone(char32_t before, char32_t after) {
  return standsAlone(static_cast<UChar32>(before)) && standsAlone(static_cast<UChar32>(after));
}

bool isCharacterBoundary(const icu::UnicodeString& text, int32_t offset) {
  if (offset <= 0 || offset >= text.length()) return true;
  // Most texts need no iterator, which takes longer.
  if (standAlone(static_cast<char32_t>(text.char32At(offset - 1)),
                 static_cast<char32_t>(text.char32At(offset)))) {
    return true;
  }
  const std::unique_ptr<icu::BreakIterator> iterator(prototype().clone());
  iterator->setText(text);
  return iterator->isBoundary(offset);
}

}  // namespace vellora
