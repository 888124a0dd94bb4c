#pragma once

#include <string>
#include <string_view>

namespace vellora::companion {

// Which writing a text has.
struct Scripts {
  bool kana = false;
  bool han = false;
  bool hangul = false;
  bool other = false;  // letters that are neither these nor Latin

  Scripts& operator|=(const Scripts& more);
};

Scripts scriptsOf(std::string_view text);

// East Asian punctuation and full-width letters as Latin text has them, one blank for each run of
// blanks, none at the ends and none before a mark that closes.
std::string withLatinMarks(std::string_view text);

}  // namespace vellora::companion
