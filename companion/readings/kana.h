#pragma once

#include <string>
#include <string_view>

namespace vellora::companion {

// Hiragana as katakana; every other character as it is.
std::u32string katakanaOf(std::string_view text);

// A word's katakana in modified Hepburn romanisation: "トーキョー" is "tōkyō", "シンヨウ"
// "shin'you". Only "ー" lengthens a vowel; which others do, the word's spelling does not tell. A
// small "ッ" before no consonant is silent. Characters that are no katakana stay as they are.
std::string romajiOf(std::u32string_view katakana);

// The same with "ー" for each "ウ" that follows a syllable in "o" or "u", as in a word that no
// dictionary has.
std::u32string withLongVowels(std::u32string_view katakana);

// Whether there is a character, and all are kana.
bool isKana(std::string_view text);

}  // namespace vellora::companion
