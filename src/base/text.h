#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vellora {

// Comparison of UTF-8 texts by canonical equivalence (Unicode, chapter 3.7): é as one code point
// equals e followed by U+0301. Every comparison of two texts in the program goes through here. Any
// thread.
bool textEquals(std::string_view a, std::string_view b);

// Whether `text` begins with `prefix`, by whole user-perceived characters: a text does not begin
// with its first base letter alone when a mark follows it.
bool textBeginsWith(std::string_view text, std::string_view prefix);

// Equal texts have equal hashes.
std::size_t textHash(std::string_view text);

// For maps whose keys are texts.
struct TextEqual {
  using is_transparent = void;
  bool operator()(std::string_view a, std::string_view b) const { return textEquals(a, b); }
};
struct TextHash {
  using is_transparent = void;
  std::size_t operator()(std::string_view text) const { return textHash(text); }
};

}  // namespace vellora
