#include "golden/known_character.h"

#include <unicode/uchar.h>

namespace vellora::golden {

bool isKnown(char32_t character) { return u_isdefined(static_cast<UChar32>(character)) != 0; }

}  // namespace vellora::golden
