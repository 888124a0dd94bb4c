#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "companion/readings/icu_rules.h"

namespace vellora::companion {

// Cyrillic, Greek, Arabic, Hebrew, Devanagari, Thai and every other script that ICU writes in Latin
// letters: Cyrillic by the tables of the BGN and PCGN for its language, Greek by that of the United
// Nations, the rest letter by letter. Arabic and Hebrew have the vowels that are written only. Not
// for two threads at once.
class Alphabets {
 public:
  // Tells Ukrainian, Belarusian, Serbian, Macedonian and Bulgarian from Russian by the letters that
  // the song has.
  void setSong(const std::vector<std::string>& lines);

  std::string latin(std::string_view text);

 private:
  const IcuRules* rules(const std::string& id);

  std::string cyrillic_ = "Russian-Latin/BGN";
  std::map<std::string, std::unique_ptr<IcuRules>> rules_;  // by the name, made when asked for
};

}  // namespace vellora::companion
