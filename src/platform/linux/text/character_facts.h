#pragma once

#include <array>

namespace vellora {

// What the text services ask most often about a character.
struct CharacterFacts {
  bool extends;     // the character before it: Grapheme_Extend
  bool decomposes;  // into others, in form D
  bool composed;    // stands in form C wherever it stands, but for the order of marks
  bool ordered;     // has an order among marks: a combining class other than 0
};

// The facts of the scripts from Hebrew to Burmese, asked of ICU once and remembered. Any thread.
class RememberedFacts {
 public:
  static const RememberedFacts& shared();

  static constexpr bool has(char32_t character) { return character >= first && character <= last; }
  // Of a character that it has.
  CharacterFacts of(char32_t character) const { return facts_[character - first]; }

 private:
  static constexpr char32_t first = 0x590;
  static constexpr char32_t last = 0x109F;

  RememberedFacts();

  std::array<CharacterFacts, last - first + 1> facts_;
};

// Ideographs and syllables of kana and Hangul: without case and width, kept as they are where they
// decompose, and no extenders, which makes most questions needless.
constexpr bool isSyllable(char32_t character) {
  return (character >= 0x309B && character <= 0x9FFF) ||
         (character >= 0xAC00 && character <= 0xD7A3) ||
         (character >= 0x3041 && character <= 0x3096);
}

// Those of them that stand in form C wherever they stand among their like: no letters of Hangul,
// of which syllables are composed, and no marks.
constexpr bool isComposedSyllable(char32_t character) {
  return (character >= 0x3400 && character <= 0x9FFF) ||
         (character >= 0xAC00 && character <= 0xD7A3) ||
         (character >= 0x3041 && character <= 0x3096) ||
         (character >= 0x30A1 && character <= 0x30FA);
}

}  // namespace vellora
