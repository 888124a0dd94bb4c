#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vellora {

// What stands for a piece of text that is not UTF-8.
inline constexpr char32_t replacementCharacter = 0xFFFD;

// The character that begins at `offset`, which must lie inside `text`; `offset` is moved past it. A
// sequence that is not well-formed is read as U+FFFD, one for each maximal part (Unicode, chapter
// 3.9, table 3-7). Any thread.
char32_t nextCharacter(std::string_view text, std::size_t& offset);

// Appends the UTF-8 form of `character`, a Unicode scalar value.
void appendCharacter(std::string& text, char32_t character);

// Whether every byte is below 0x80.
bool isAscii(std::string_view text);

// Whether `text` is UTF-8 throughout.
bool isWellFormed(std::string_view text);

// `text` with U+FFFD in the place of what is not UTF-8.
std::string wellFormed(std::string_view text);

}  // namespace vellora
