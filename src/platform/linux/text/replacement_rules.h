#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace vellora {

// Transliteration rules of the simplest form: a piece of text becomes another, wherever it stands.
// Applied as a rule-based transliterator does (UTS #35, part 2, "Transform Rules"): from left to
// right, at each place the first rule in the order of writing that fits there, and on behind what
// it replaced. Constant once made: any thread.
class ReplacementRules {
 public:
  // Reads rules as ICU writes them, a line each: "甚麼 > 什么;". Nothing where any line is anything
  // else, has a context, a set, a quotation or a cursor.
  static std::optional<ReplacementRules> parse(std::string_view written);

  // `text` with the rules applied, and U+FFFD in the place of what is not UTF-8.
  std::string apply(std::string_view text) const;

 private:
  struct Rule {
    std::string piece;
    std::string replacement;
  };

  bool add(std::string_view line);
  // The first rule that fits at the beginning of `text`, which begins with `first`.
  const Rule* fitting(char32_t first, std::string_view text) const;

  std::unordered_map<char32_t, std::vector<Rule>> byFirst_;  // in the order of writing
  char32_t lowest_ = 0x10FFFF;                               // the bounds of the first characters
  char32_t highest_ = 0;
};

}  // namespace vellora
