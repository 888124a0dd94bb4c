#include "companion/readings/chinese.h"

#include <algorithm>
#include <vector>

#include "base/utf8.h"
#include "companion/readings/chinese_words.h"

namespace vellora::companion {
namespace {

const WordReading* wordAt(std::string_view text) {
  static const std::vector<WordReading> words = wordReadings();
  const auto found = std::ranges::find_if(
      words, [text](const WordReading& reading) { return text.starts_with(reading.word); });
  return found == words.end() ? nullptr : &*found;
}

}  // namespace

std::string Chinese::pinyin(std::string_view text) {
  if (!rules_) rules_ = IcuRules::named("Han-Latin");
  if (!rules_) return {};
  // The words that are known stand in the text as they are read, with blanks about them.
  std::string known;
  for (std::size_t offset = 0; offset < text.size();) {
    if (const WordReading* word = wordAt(text.substr(offset))) {
      known.append(" ").append(word->pinyin).append(" ");
      offset += word->word.size();
    } else {
      appendCharacter(known, nextCharacter(text, offset));
    }
  }
  return rules_->apply(known);
}

}  // namespace vellora::companion
