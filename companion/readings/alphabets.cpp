#include "companion/readings/alphabets.h"

#include <algorithm>

#include "companion/song/text.h"

namespace vellora::companion {
namespace {

// A vowel that Devanagari's last consonant carries is not spoken in today's languages, so a virama
// takes it away, but from a word of one letter.
constexpr const char* hindi = "hindi";
constexpr std::string_view hindiRules =
    "[[:L:][:M:]-[\\u094D]] { ([\\u0915-\\u0939\\u0958-\\u095F]) } [^[:L:][:M:]] > $1 \\u094D ;"
    ":: Devanagari-Latin ;";
// ICU takes a word of one letter for one in capitals.
constexpr std::string_view cyrillicWords =
    "[^[:L:]] { Я } [^[:L:]] > Ya ; [^[:L:]] { Ю } [^[:L:]] > Yu ;"
    "[^[:L:]] { Є } [^[:L:]] > Ye ; [^[:L:]] { Ї } [^[:L:]] > Yi ;";
// The line under a letter says how a Greek word is spelled, not how it sounds.
constexpr const char* greek = "greek";
constexpr std::string_view greekRules = ":: Greek-Latin/UNGEGN ; :: NFD ; \\u0331 > ; :: NFC ;";

bool hasAny(const std::string& text, std::initializer_list<std::string_view> letters) {
  return std::ranges::any_of(
      letters, [&](std::string_view letter) { return text.find(letter) != std::string::npos; });
}

// Russian has "ъ" before "е", "ю" and "я" only; in Bulgarian it is a vowel.
bool hasVowelHardSign(const std::string& text) {
  constexpr std::string_view sign = "ъ";
  for (std::size_t at = text.find(sign); at != std::string::npos; at = text.find(sign, at)) {
    at += sign.size();
    const std::string_view rest = std::string_view(text).substr(at);
    if (!rest.starts_with("е") && !rest.starts_with("ю") && !rest.starts_with("я")) return true;
  }
  return false;
}

std::string cyrillicOf(const std::string& song) {
  if (hasAny(song, {"ў", "Ў"})) return "Belarusian-Latin/BGN";
  if (hasAny(song, {"і", "І", "ї", "Ї", "є", "Є", "ґ", "Ґ"})) return "Ukrainian-Latin/BGN";
  if (hasAny(song, {"ѓ", "Ѓ", "ќ", "Ќ", "ѕ", "Ѕ"})) return "Macedonian-Latin/BGN";
  if (hasAny(song, {"ј", "Ј", "љ", "Љ", "њ", "Њ", "ћ", "Ћ", "ђ", "Ђ", "џ", "Џ"})) {
    return "Serbian-Latin/BGN";
  }
  if (hasAny(song, {"ы", "Ы", "э", "Э", "ё", "Ё"})) return "Russian-Latin/BGN";
  return hasVowelHardSign(song) ? "Bulgarian-Latin/BGN" : "Russian-Latin/BGN";
}

}  // namespace

void Alphabets::setSong(const std::vector<std::string>& lines) {
  std::string song;
  for (const std::string& line : lines) song.append(line).append("\n");
  cyrillic_ = cyrillicOf(song);
}

const IcuRules* Alphabets::rules(const std::string& id) {
  const auto [entry, isNew] = rules_.try_emplace(id);
  if (isNew) {
    if (id == hindi) {
      entry->second = IcuRules::written(hindiRules);
    } else if (id == greek) {
      entry->second = IcuRules::written(greekRules);
    } else if (id.ends_with("/BGN")) {
      entry->second = IcuRules::written(std::string(cyrillicWords) + ":: " + id + " ;");
    } else {
      entry->second = IcuRules::named(id.c_str());
    }
  }
  return entry->second.get();
}

std::string Alphabets::latin(std::string_view text) {
  std::string result(text);
  // Each leaves the other scripts alone; the last takes what is left.
  for (const std::string& id :
       {cyrillic_, std::string(greek), std::string(hindi), std::string("Any-Latin")}) {
    if (const IcuRules* const each = rules(id)) result = each->apply(result);
  }
  return result;
}

}  // namespace vellora::companion
