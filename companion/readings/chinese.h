#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "companion/readings/icu_rules.h"

namespace vellora::companion {

// Chinese in Hanyu Pinyin, a syllable a word, with the tones of the dictionary. A character with
// several readings has the one of the word that it stands in where `wordReadings` has that word,
// and else its most frequent one. Not for two threads at once.
class Chinese {
 public:
  std::string pinyin(std::string_view text);

 private:
  std::unique_ptr<IcuRules> rules_;  // made when they are first asked for: that takes a while
};

}  // namespace vellora::companion
