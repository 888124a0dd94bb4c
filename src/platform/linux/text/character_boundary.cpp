#include "platform/linux/text/character_boundary.h"

#include <cstdlib>
#include <memory>

#include <unicode/brkiter.h>
#include <unicode/locid.h>
#include <unicode/uchar.h>

namespace vellora {

namespace {

bool hasNoBreakProperty(UChar32 character) {
  return u_getIntPropertyValue(character, UCHAR_GRAPHEME_CLUSTER_BREAK) == U_GCB_OTHER;
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
  // Rule GB999; most texts need no iterator, which takes longer.
  if (hasNoBreakProperty(before) && hasNoBreakProperty(after)) return true;
  const std::unique_ptr<icu::BreakIterator> iterator(prototype().clone());
  iterator->setText(text);
  return iterator->isBoundary(offset);
}

}  // namespace vellora
