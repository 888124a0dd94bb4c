#pragma once

#include <string_view>

namespace vellora::OverlayMatching {

// Whether trimming removes the character: white space, line ends, and U+200B.
bool isWhitespaceOrNewline(char32_t character);

// The part of `text` between its first and its last character that is neither white space nor a
// line end; what stands between them stays. Any thread.
std::string_view trimmed(std::string_view text);

}  // namespace vellora::OverlayMatching
