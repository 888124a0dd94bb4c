#pragma once

#include <string>
#include <string_view>

namespace vellora::companion {

// Hangul in the Revised Romanisation of Korean (2000), as a word is pronounced: consonants that
// meet within it change each other ("독립" is "dongnip", "좋다" "jota", "같이" "gachi"). What only
// a dictionary tells is left out: an "n" that is put between the parts of a compound, and which
// "ㄴㄹ" is read "nn". Characters that are no Hangul syllables stay as they are.
std::string romajaOf(std::string_view text);

}  // namespace vellora::companion
