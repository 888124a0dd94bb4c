#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "exchange/records/records.h"

// Songs of any length in seven languages, for measuring what looking a row up costs: the same lines
// and rows at each call.
namespace vellora::verse {

// Verse of about 40 characters, whose words follow from the number of the line.
struct Language {
  std::vector<std::string> words;
  std::string separator;
  std::size_t wordsInALine;
};

inline constexpr std::int64_t languages = 7;

inline Language language(std::int64_t which) {
  switch (which) {
    case 0:
      return {{"the", "evening", "river", "carries", "all", "our", "paper", "boats", "to", "sea"},
              " ",
              8};
    case 1:
      return {{"les", "étoiles", "légères", "là-bas", "où", "rêvent", "nos", "bateaux", "naïfs",
               "déjà"},
              " ",
              7};
    case 2:
      return {{"小舟", "漂う", "夜の", "川に", "ガラス", "星が", "ひとつ", "揺れる", "静かに",
               "そっと"},
              "",
              15};
    case 3:
      return {
          {"小船", "轻轻", "飘过", "夜晚", "的河", "满天", "星星", "为我", "点亮", "远方"}, "", 20};
    case 4:
      return {
          {"小船", "輕輕", "飄過", "夜晚", "的河", "滿天", "星星", "為我", "點亮", "遠方"}, "", 20};
    // Syllables and marks, whose seams take the longest to judge.
    case 5:
      return {{"작은", "종이배가", "밤의", "강물을", "따라서", "흘러가고", "별빛이", "나를", "위해",
               "빛나네"},
              " ",
              11};
    default:
      return {
          {"छोटी", "नाव", "रात की", "नदी में", "बहती", "तारे", "मेरे लिए", "चमकते", "दूर", "धीरे"}, " ", 9};
  }
}

inline const char* nameOf(std::int64_t which) {
  constexpr const char* names[] = {"English",     "French", "Japanese", "Simplified",
                                   "Traditional", "Korean", "Hindi"};
  return names[which];
}

inline std::string lineText(const Language& words, std::size_t number) {
  std::string text;
  for (std::size_t at = 0; at < words.wordsInALine; ++at) {
    if (at > 0) text += words.separator;
    text += words.words[(number + at * (1 + number % 7)) % words.words.size()];
    number /= at % 2 == 0 ? 10 : 1;
  }
  return text;
}

inline std::vector<OverlayLine> makeLines(std::int64_t which, std::int64_t count) {
  const Language words = language(which);
  std::vector<OverlayLine> lines;
  for (std::int64_t number = 0; number < count; ++number) {
    lines.push_back({lineText(words, static_cast<std::size_t>(number * 7919)),
                     "Translation of line " + std::to_string(number)});
  }
  return lines;
}

// Rows as the player shows them: single lines from everywhere, and now and then two of them joined.
inline std::vector<std::string> makeRows(const std::vector<OverlayLine>& lines) {
  std::vector<std::string> rows;
  for (std::size_t at = 0; at < 64; ++at) {
    const std::size_t line = at * 997 % (lines.size() - 1);
    rows.push_back(lines[line].source);
    if (at % 8 == 7) rows.back() += " " + lines[line + 1].source;
  }
  return rows;
}

}  // namespace vellora::verse
