#pragma once

#include <span>
#include <string_view>

namespace vellora {

// The one of `words` that is likely meant by a mistyped word: letter case, blanks, "-" and "_"
// aside, at most a third of its letters have to be put in, taken out or replaced (Levenshtein's
// distance). Empty when none is as near. All are ASCII, or compared by byte.
std::string_view nearestWord(std::string_view word, std::span<const std::string_view> words);

}  // namespace vellora
