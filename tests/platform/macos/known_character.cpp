#include "golden/known_character.h"

#include <CoreFoundation/CoreFoundation.h>

namespace vellora::golden {

// The set of the illegal has what is not assigned, and comes from the same tables as the others.
bool isKnown(char32_t character) {
  return !CFCharacterSetIsLongCharacterMember(CFCharacterSetGetPredefined(kCFCharacterSetIllegal),
                                              static_cast<UTF32Char>(character));
}

}  // namespace vellora::golden
