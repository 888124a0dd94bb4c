#include "platform/linux/text/character_facts.h"

#include <unicode/uchar.h>
#include <unicode/unorm2.h>

namespace vellora {

namespace {

CharacterFacts asked(UChar32 character) {
  return {.extends = u_hasBinaryProperty(character, UCHAR_GRAPHEME_EXTEND) != 0,
          .decomposes = u_getIntPropertyValue(character, UCHAR_NFD_QUICK_CHECK) != UNORM_YES,
          .composed = u_getIntPropertyValue(character, UCHAR_NFC_QUICK_CHECK) == UNORM_YES,
          .ordered = u_getCombiningClass(character) != 0};
}

}  // namespace

RememberedFacts::RememberedFacts() {
  for (char32_t character = first; character <= last; ++character) {
    facts_[character - first] = asked(static_cast<UChar32>(character));
  }
}

const RememberedFacts& RememberedFacts::shared() {
  static const RememberedFacts facts;
  return facts;
}

}  // namespace vellora
