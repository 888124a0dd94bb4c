#pragma once

#include <unicode/unistr.h>

namespace vellora {

// Whether a user-perceived character (extended grapheme cluster, UAX #29, consonants joined by
// a virama included) ends at `offset`, counted in UTF-16 units and never inside a surrogate pair.
// Both ends of the text are boundaries. Any thread.
bool isCharacterBoundary(const icu::UnicodeString& text, int32_t offset);

}  // namespace vellora
