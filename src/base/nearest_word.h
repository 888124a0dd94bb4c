#pragma once

#include <span>
#include <string_view>

namespace vellora {

// The one of `words` that is likely meant by a mistyped word: letter case, blanks, "-" and "_"
// aside, at most a third of its letters have to be put in, taken out, replaced or swapped with the
// next (optimal string alignment distance). Empty when none is as near. Compared by bytes.
std::string_view nearestWord(std::string_view word, std::span<const std::string_view> words);

}  // namespace vellora
