#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vellora {

// Transliteration rules of the simplest form: a piece of text becomes another, wherever it stands.
// Applied as a rule-based transliterator does (UTS #35, part 2, "Transform Rules"): from left to
// right, at each place the first rule in the order of writing that fits there, and on behind what
// it replaced. Constant once made: any thread.
class ReplacementRules {
 public:
  // Reads rules as ICU writes them, a line each: "甚麼 > 什么;". Nothing where any line is anything
  // else, has a context, a set, a quotation or a cursor; nor where there are more than 65,535, a
  // piece begins beyond U+FFFF or has more than that in bytes.
  static std::optional<ReplacementRules> parse(std::string_view written);

  // `text` with the rules applied, and U+FFFD in the place of what is not UTF-8.
  std::string apply(std::string_view text) const;

 private:
  // A rule in `texts_`: what stands in a piece behind its first character, and then the
  // replacement.
  struct Rule {
    std::uint32_t at;
    std::uint16_t rest;  // bytes
    std::uint16_t replacement;
  };
  struct Written {
    char32_t first;
    Rule rule;
  };

  std::optional<Written> add(std::string_view line);
  bool arrange(const std::vector<Written>& written);
  // The first rule that fits before `behind`, which follows `first`.
  const Rule* fitting(char32_t first, std::string_view behind) const {
    const std::size_t place = first - lowest_;
    if (first < lowest_ || place + 1 >= begins_.size()) return nullptr;
    for (std::size_t i = begins_[place]; i < begins_[place + 1]; ++i) {
      const Rule& rule = rules_[i];
      const std::string_view rest(texts_.data() + rule.at, rule.rest);
      if (rest.empty() || behind.starts_with(rest)) return &rule;
    }
    return nullptr;
  }

  std::string texts_;
  std::vector<Rule> rules_;  // by first character, and in the order of writing
  // Where the rules begin for each character from the lowest to the highest first one, and behind
  // the last where they end.
  std::vector<std::uint16_t> begins_;
  char32_t lowest_ = 0;
};

}  // namespace vellora
