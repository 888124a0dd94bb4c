#pragma once

#include <map>
#include <optional>
#include <string>

namespace vellora::companion {

// Whether the text is a language tag as file names carry it: "de", "pt-BR", "zh-Hant".
bool isLanguageTag(const std::string& text);

// The languages that a word of a file's name may mean. One thread.
class Languages {
 public:
  // The tag that the word is, or that of the language of this name: in English or in itself, as the
  // Unicode CLDR has it, with letter case and accents of no account ("german", "Deutsch"). Nothing
  // for every other word.
  std::optional<std::string> meantBy(const std::string& word);

 private:
  // By comparison key (see OverlayMatching::normalized); empty until it is needed.
  std::map<std::string, std::string> tagOfName_;
};

}  // namespace vellora::companion
