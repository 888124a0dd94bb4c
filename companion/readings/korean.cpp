#include "companion/readings/korean.h"

#include <array>
#include <cstddef>
#include <optional>

#include "base/utf8.h"

namespace vellora::companion {
namespace {

// A syllable's letters; the consonant after its vowel may be two, and each may be missing (0).
struct Syllable {
  char32_t whole = 0;
  char32_t onset = 0;
  std::size_t vowel = 0;
  char32_t coda = 0;
};

constexpr std::u32string_view onsets = U"ㄱㄲㄴㄷㄸㄹㅁㅂㅃㅅㅆㅇㅈㅉㅊㅋㅌㅍㅎ";
constexpr std::u32string_view codas = U"ㄱㄲㄳㄴㄵㄶㄷㄹㄺㄻㄼㄽㄾㄿㅀㅁㅂㅄㅅㅆㅇㅈㅊㅋㅌㅍㅎ";
constexpr auto vowels = std::to_array<std::string_view>({"a",  "ae", "ya", "yae", "eo", "e",  "yeo",
                                                         "ye", "o",  "wa", "wae", "oe", "yo", "u",
                                                         "wo", "we", "wi", "yu",  "eu", "ui", "i"});
constexpr std::size_t vowelI = 20;
constexpr std::size_t vowelYeo = 6;

// The Unicode standard, section 3.12: where a syllable's letters are in its number.
std::optional<Syllable> syllableOf(char32_t character) {
  if (character < U'가' || character > U'힣') return std::nullopt;
  const char32_t index = character - U'가';
  const char32_t coda = index % 28;
  return Syllable{character, onsets[index / 588], index % 588 / 28,
                  coda == 0 ? 0 : codas[coda - 1]};
}

// What two letters after a vowel are.
struct Pair {
  char32_t both, first, second;
};
constexpr auto pairs = std::to_array<Pair>({{U'ㄳ', U'ㄱ', U'ㅅ'},
                                            {U'ㄵ', U'ㄴ', U'ㅈ'},
                                            {U'ㄶ', U'ㄴ', U'ㅎ'},
                                            {U'ㄺ', U'ㄹ', U'ㄱ'},
                                            {U'ㄻ', U'ㄹ', U'ㅁ'},
                                            {U'ㄼ', U'ㄹ', U'ㅂ'},
                                            {U'ㄽ', U'ㄹ', U'ㅅ'},
                                            {U'ㄾ', U'ㄹ', U'ㅌ'},
                                            {U'ㄿ', U'ㄹ', U'ㅍ'},
                                            {U'ㅀ', U'ㄹ', U'ㅎ'},
                                            {U'ㅄ', U'ㅂ', U'ㅅ'}});

Pair apart(char32_t coda) {
  for (const Pair& pair : pairs) {
    if (pair.both == coda) return pair;
  }
  return {coda, 0, coda};
}

bool isOneOf(char32_t letter, std::u32string_view letters) {
  return letters.find(letter) != std::u32string_view::npos;
}

// The one sound that is left of what ends a syllable, before a consonant or the word's end.
char32_t closed(char32_t coda) {
  if (isOneOf(coda, U"ㄱㄲㅋㄳㄺ")) return U'ㄱ';
  if (isOneOf(coda, U"ㄷㅅㅆㅈㅊㅌㅎ")) return U'ㄷ';
  if (isOneOf(coda, U"ㅂㅍㄿㅄ")) return U'ㅂ';
  if (isOneOf(coda, U"ㄴㄵㄶ")) return U'ㄴ';
  if (isOneOf(coda, U"ㄹㄼㄽㄾㅀ")) return U'ㄹ';
  if (isOneOf(coda, U"ㅁㄻ")) return U'ㅁ';
  return coda;
}

char32_t closedOf(const Syllable& syllable) {
  return syllable.whole == U'밟' ? U'ㅂ' : closed(syllable.coda);
}

char32_t nasal(char32_t stop) {
  if (stop == U'ㄱ') return U'ㅇ';
  return stop == U'ㄷ' ? U'ㄴ' : U'ㅁ';
}

// Before a vowel the last letter goes over to the next syllable.
void carryOver(Syllable& syllable, Syllable& next) {
  if (syllable.coda == U'ㅇ') return;
  Pair parts = apart(syllable.coda);
  if (parts.second == U'ㅎ') parts = {0, 0, parts.first};
  syllable.coda = parts.first;
  if (parts.second == 0) return;
  next.onset = parts.second;
  if (next.vowel != vowelI) return;
  if (parts.second == U'ㄷ') next.onset = U'ㅈ';
  if (parts.second == U'ㅌ') next.onset = U'ㅊ';
}

// The "ㅎ" of a verb's own "히" and "혀" melts into the stop before it. Elsewhere it stays, as the
// rules want it in nouns.
bool belongsToVerb(const Syllable& next) {
  return next.vowel == vowelI || (next.vowel == vowelYeo && (next.coda == 0 || next.coda == U'ㅆ'));
}

void meetH(Syllable& syllable, Syllable& next) {
  const Pair parts = apart(syllable.coda);
  char32_t melted = 0;
  if (parts.second == U'ㅈ') melted = U'ㅊ';
  if (belongsToVerb(next)) {
    if (parts.second == U'ㄷ') melted = U'ㅊ';
    if (parts.second == U'ㄱ') melted = U'ㅋ';
    if (parts.second == U'ㅂ') melted = U'ㅍ';
  }
  if (melted == 0) {
    syllable.coda = closedOf(syllable);
    return;
  }
  syllable.coda = parts.first;
  next.onset = melted;
}

// "ㅎ" before a consonant that it can give its breath to.
bool giveBreath(Syllable& syllable, Syllable& next) {
  constexpr std::u32string_view plain = U"ㄱㄷㅈㅅ";
  constexpr std::u32string_view breathed = U"ㅋㅌㅊㅅ";
  const Pair parts = apart(syllable.coda);
  const std::size_t index = plain.find(next.onset);
  if (parts.second != U'ㅎ' || index == std::u32string_view::npos) return false;
  syllable.coda = parts.first;
  next.onset = breathed[index];
  return true;
}

void meetConsonant(Syllable& syllable, Syllable& next) {
  if (next.onset == U'ㅎ') return meetH(syllable, next);
  if (giveBreath(syllable, next)) return;
  const bool ofVerb = syllable.coda == U'ㄺ' && !isOneOf(syllable.whole, U"닭흙");
  char32_t left = ofVerb && next.onset == U'ㄱ' ? U'ㄹ' : closedOf(syllable);
  const bool stop = isOneOf(left, U"ㄱㄷㅂ");
  if (next.onset == U'ㄹ') {
    if (stop) left = nasal(left);
    if (stop || isOneOf(left, U"ㅁㅇ")) next.onset = U'ㄴ';
    if (left == U'ㄴ' && !stop) left = U'ㄹ';
  } else if (isOneOf(next.onset, U"ㄴㅁ")) {
    if (stop) left = nasal(left);
    if (left == U'ㄹ' && next.onset == U'ㄴ') next.onset = U'ㄹ';
  }
  syllable.coda = left;
}

std::string_view spelledOnset(char32_t onset) {
  constexpr auto letters =
      std::to_array<std::string_view>({"g", "kk", "n", "d", "tt", "r", "m", "b", "pp", "s", "ss",
                                       "", "j", "jj", "ch", "k", "t", "p", "h"});
  return letters[onsets.find(onset)];
}

std::string_view spelledCoda(char32_t coda) {
  constexpr std::u32string_view sounds = U"ㄱㄴㄷㄹㅁㅂㅇ";
  constexpr auto letters = std::to_array<std::string_view>({"k", "n", "t", "l", "m", "p", "ng"});
  const std::size_t index = sounds.find(coda);
  return index == std::u32string_view::npos ? std::string_view() : letters[index];
}

}  // namespace

std::string romajaOf(std::string_view text) {
  std::string result;
  std::optional<Syllable> syllable;
  char32_t before = 0;  // what ended the syllable before
  const auto spell = [&](const Syllable& spelled) {
    const bool doubled = before == U'ㄹ' && spelled.onset == U'ㄹ';
    result.append(doubled ? "l" : spelledOnset(spelled.onset));
    result.append(vowels[spelled.vowel]).append(spelledCoda(spelled.coda));
    before = spelled.coda;
  };
  for (std::size_t offset = 0; offset < text.size();) {
    const char32_t character = nextCharacter(text, offset);
    std::optional<Syllable> next = syllableOf(character);
    if (syllable) {
      if (!next) {
        syllable->coda = closedOf(*syllable);
      } else if (syllable->coda != 0) {
        next->onset == U'ㅇ' ? carryOver(*syllable, *next) : meetConsonant(*syllable, *next);
      }
      spell(*syllable);
    }
    if (!next) {
      before = 0;
      appendCharacter(result, character);
    }
    syllable = next;
  }
  if (syllable) {
    syllable->coda = closedOf(*syllable);
    spell(*syllable);
  }
  return result;
}

}  // namespace vellora::companion
