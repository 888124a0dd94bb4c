#pragma once

#include <string_view>

namespace vellora {

// The language whose letter forms the text should have, as an RFC 3066 tag: Japanese for a text
// with kana, Korean for one with Hangul, else Chinese for one with Han characters, which the three
// share but write differently; English for every other text, whose forms do not depend on it.
// Whatever the user's own language is. Any thread.
const char* languageTag(std::string_view text);

}  // namespace vellora
