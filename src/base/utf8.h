#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vellora {

// What stands for a piece of text that is not UTF-8.
inline constexpr char32_t replacementCharacter = 0xFFFD;

namespace Utf8 {

// Parts of what follows. Most characters by far: those of ASCII but U+0000, and those of three
// bytes. 0, and `offset` as it was, where another stands there, or none that is well-formed.
inline char32_t commonCharacter(std::string_view text, std::size_t& offset) {
  const auto byte = [&](std::size_t at) -> char32_t {
    return static_cast<unsigned char>(text[offset + at]);
  };
  if (const char32_t first = byte(0); first != 0 && first < 0x80) {
    ++offset;
    return first;
  }
  if ((byte(0) & 0xF0) != 0xE0 || text.size() - offset < 3) return 0;
  const char32_t second = byte(1) ^ 0x80;
  const char32_t third = byte(2) ^ 0x80;
  const char32_t character = (byte(0) & 0xF) << 12 | second << 6 | third;
  const bool isOverlong = character < 0x800;
  const bool isSurrogate = (character & 0xF800) == 0xD800;
  if ((second | third) >= 0x40 || isOverlong || isSurrogate) return 0;
  offset += 3;
  return character;
}

// Of any other, or U+FFFD.
char32_t decodeCharacter(std::string_view text, std::size_t& offset);

}  // namespace Utf8

// The character that begins at `offset`, which must lie inside `text`; `offset` is moved past it. A
// sequence that is not well-formed is read as U+FFFD, one for each maximal part (Unicode, chapter
// 3.9, table 3-7). Any thread.
inline char32_t nextCharacter(std::string_view text, std::size_t& offset) {
  if (const char32_t character = Utf8::commonCharacter(text, offset)) return character;
  return Utf8::decodeCharacter(text, offset);
}

// Appends the UTF-8 form of `character`, a Unicode scalar value.
void appendCharacter(std::string& text, char32_t character);

// Whether every byte is below 0x80.
bool isAscii(std::string_view text);

// Whether `text` is UTF-8 throughout.
bool isWellFormed(std::string_view text);

// `text` with U+FFFD in the place of what is not UTF-8.
std::string wellFormed(std::string_view text);

}  // namespace vellora
