#pragma once

#include <unicode/unistr.h>

namespace vellora {

// Whether a user-perceived character (extended grapheme cluster, UAX #29, consonants joined by
// a virama included) ends at `offset`, counted in UTF-16 units and never inside a surrogate pair.
// Both ends of the text are boundaries. Any thread.
bool isCharacterBoundary(const icu::UnicodeString& text, int32_t offset);

// Whether a user-perceived character ends between these two whatever stands before and behind them.
// False only says that this is not known. Any thread.
bool standAlone(char32_t before, char32_t after);

}  // namespace vellora
