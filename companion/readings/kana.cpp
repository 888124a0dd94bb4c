#include "companion/readings/kana.h"

#include <array>
#include <cstddef>

#include "base/utf8.h"

namespace vellora::companion {
namespace {

struct Sound {
  std::u32string_view kana;
  std::string_view letters;
};

// Modified Hepburn, with the spellings of foreign sounds; the longer before the shorter.
constexpr auto sounds = std::to_array<Sound>({
    {U"キャ", "kya"}, {U"キュ", "kyu"}, {U"キョ", "kyo"}, {U"ギャ", "gya"}, {U"ギュ", "gyu"},
    {U"ギョ", "gyo"}, {U"シャ", "sha"}, {U"シュ", "shu"}, {U"ショ", "sho"}, {U"シェ", "she"},
    {U"ジャ", "ja"},  {U"ジュ", "ju"},  {U"ジョ", "jo"},  {U"ジェ", "je"},  {U"チャ", "cha"},
    {U"チュ", "chu"}, {U"チョ", "cho"}, {U"チェ", "che"}, {U"ヂャ", "ja"},  {U"ヂュ", "ju"},
    {U"ヂョ", "jo"},  {U"ニャ", "nya"}, {U"ニュ", "nyu"}, {U"ニョ", "nyo"}, {U"ヒャ", "hya"},
    {U"ヒュ", "hyu"}, {U"ヒョ", "hyo"}, {U"ビャ", "bya"}, {U"ビュ", "byu"}, {U"ビョ", "byo"},
    {U"ピャ", "pya"}, {U"ピュ", "pyu"}, {U"ピョ", "pyo"}, {U"ミャ", "mya"}, {U"ミュ", "myu"},
    {U"ミョ", "myo"}, {U"リャ", "rya"}, {U"リュ", "ryu"}, {U"リョ", "ryo"}, {U"ファ", "fa"},
    {U"フィ", "fi"},  {U"フェ", "fe"},  {U"フォ", "fo"},  {U"フュ", "fyu"}, {U"ティ", "ti"},
    {U"ディ", "di"},  {U"デュ", "dyu"}, {U"テュ", "tyu"}, {U"トゥ", "tu"},  {U"ドゥ", "du"},
    {U"ツァ", "tsa"}, {U"ツィ", "tsi"}, {U"ツェ", "tse"}, {U"ツォ", "tso"}, {U"ウィ", "wi"},
    {U"ウェ", "we"},  {U"ウォ", "wo"},  {U"ヴァ", "va"},  {U"ヴィ", "vi"},  {U"ヴェ", "ve"},
    {U"ヴォ", "vo"},  {U"ヴュ", "vyu"}, {U"イェ", "ye"},  {U"クァ", "kwa"}, {U"クィ", "kwi"},
    {U"クェ", "kwe"}, {U"クォ", "kwo"}, {U"グァ", "gwa"}, {U"ア", "a"},     {U"イ", "i"},
    {U"ウ", "u"},     {U"エ", "e"},     {U"オ", "o"},     {U"カ", "ka"},    {U"キ", "ki"},
    {U"ク", "ku"},    {U"ケ", "ke"},    {U"コ", "ko"},    {U"ガ", "ga"},    {U"ギ", "gi"},
    {U"グ", "gu"},    {U"ゲ", "ge"},    {U"ゴ", "go"},    {U"サ", "sa"},    {U"シ", "shi"},
    {U"ス", "su"},    {U"セ", "se"},    {U"ソ", "so"},    {U"ザ", "za"},    {U"ジ", "ji"},
    {U"ズ", "zu"},    {U"ゼ", "ze"},    {U"ゾ", "zo"},    {U"タ", "ta"},    {U"チ", "chi"},
    {U"ツ", "tsu"},   {U"テ", "te"},    {U"ト", "to"},    {U"ダ", "da"},    {U"ヂ", "ji"},
    {U"ヅ", "zu"},    {U"デ", "de"},    {U"ド", "do"},    {U"ナ", "na"},    {U"ニ", "ni"},
    {U"ヌ", "nu"},    {U"ネ", "ne"},    {U"ノ", "no"},    {U"ハ", "ha"},    {U"ヒ", "hi"},
    {U"フ", "fu"},    {U"ヘ", "he"},    {U"ホ", "ho"},    {U"バ", "ba"},    {U"ビ", "bi"},
    {U"ブ", "bu"},    {U"ベ", "be"},    {U"ボ", "bo"},    {U"パ", "pa"},    {U"ピ", "pi"},
    {U"プ", "pu"},    {U"ペ", "pe"},    {U"ポ", "po"},    {U"マ", "ma"},    {U"ミ", "mi"},
    {U"ム", "mu"},    {U"メ", "me"},    {U"モ", "mo"},    {U"ヤ", "ya"},    {U"ユ", "yu"},
    {U"ヨ", "yo"},    {U"ラ", "ra"},    {U"リ", "ri"},    {U"ル", "ru"},    {U"レ", "re"},
    {U"ロ", "ro"},    {U"ワ", "wa"},    {U"ヰ", "i"},     {U"ヱ", "e"},     {U"ヲ", "o"},
    {U"ヴ", "vu"},    {U"ァ", "a"},     {U"ィ", "i"},     {U"ゥ", "u"},     {U"ェ", "e"},
    {U"ォ", "o"},     {U"ャ", "ya"},    {U"ュ", "yu"},    {U"ョ", "yo"},    {U"ヮ", "wa"},
    {U"ヵ", "ka"},    {U"ヶ", "ke"},
});

// The sound that the text begins with; null where it begins with none.
const Sound* soundOf(std::u32string_view text) {
  for (const Sound& sound : sounds) {
    if (text.starts_with(sound.kana)) return &sound;
  }
  return nullptr;
}

bool isVowel(char letter) { return std::string_view("aiueo").find(letter) != std::string::npos; }

// Puts a macron on the last letter, which is a vowel, or leaves the text as it is.
void lengthen(std::string& text) {
  constexpr std::string_view vowels = "aiueo";
  constexpr std::array<std::string_view, 5> longVowels{"ā", "ī", "ū", "ē", "ō"};
  if (text.empty()) return;
  const std::size_t vowel = vowels.find(text.back());
  if (vowel == std::string_view::npos) return;
  text.pop_back();
  text.append(longVowels[vowel]);
}

}  // namespace

std::u32string katakanaOf(std::string_view text) {
  constexpr char32_t first = U'ぁ';
  constexpr char32_t last = U'ゖ';
  constexpr char32_t apart = U'ァ' - U'ぁ';
  std::u32string result;
  for (std::size_t offset = 0; offset < text.size();) {
    const char32_t character = nextCharacter(text, offset);
    result.push_back(character >= first && character <= last ? character + apart : character);
  }
  return result;
}

std::string romajiOf(std::u32string_view katakana) {
  std::string result;
  bool doubled = false;  // after ッ
  bool afterN = false;   // after ン
  while (!katakana.empty()) {
    const char32_t character = katakana.front();
    const Sound* const sound = soundOf(katakana);
    if (sound != nullptr) {
      const char first = sound->letters.front();
      if (doubled && !isVowel(first)) result.push_back(first == 'c' ? 't' : first);
      if (afterN && (isVowel(first) || first == 'y')) result.push_back('\'');
      result.append(sound->letters);
      katakana.remove_prefix(sound->kana.size());
    } else {
      if (character == U'ー') {
        lengthen(result);
      } else if (character == U'ン') {
        result.push_back('n');
      } else if (character != U'ッ') {
        appendCharacter(result, character);
      }
      katakana.remove_prefix(1);
    }
    doubled = character == U'ッ';
    afterN = character == U'ン';
  }
  return result;
}

std::u32string withLongVowels(std::u32string_view katakana) {
  std::u32string result;
  char before = 0;  // the last sound's vowel
  while (!katakana.empty()) {
    if (katakana.front() == U'ウ' && (before == 'o' || before == 'u') &&
        soundOf(katakana)->kana.size() == 1) {
      result.push_back(U'ー');
      before = 0;
      katakana.remove_prefix(1);
      continue;
    }
    const Sound* const sound = soundOf(katakana);
    const std::size_t length = sound != nullptr ? sound->kana.size() : 1;
    before = sound != nullptr ? sound->letters.back() : '\0';
    result.append(katakana.substr(0, length));
    katakana.remove_prefix(length);
  }
  return result;
}

bool isKana(std::string_view text) {
  for (const char32_t character : katakanaOf(text)) {
    if (character < U'ァ' || character > U'ー' || character == U'・') return false;
  }
  return !text.empty();
}

}  // namespace vellora::companion
