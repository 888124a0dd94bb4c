#pragma once

#include <string_view>

namespace vellora::companion {

// What a text is written in, as far as it takes to tell a line from its translation.
enum class Script {
  none,
  latin,
  greek,
  cyrillic,
  arabicOrHebrew,
  indic,
  thai,
  han,
  japanese,
  korean
};

// Kana make a text Japanese and Hangul Korean, whatever else stands in it; otherwise the script
// that most letters have. `none` for a text without letters.
Script scriptOf(std::string_view text);

}  // namespace vellora::companion
