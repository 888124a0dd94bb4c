#include "companion/readings/japanese.h"

#include <cstddef>
#include <utility>
#include <vector>

#include <mecab.h>

#include "base/utf8.h"
#include "companion/readings/kana.h"
#include "companion/readings/scripts.h"

namespace vellora::companion {
namespace {

// The fields of IPADIC's entries that are looked at.
enum Field : std::size_t { wordClass = 0, subclass = 1, form = 5, reading = 7, pronunciation = 8 };

struct Word {
  std::string_view surface;
  std::vector<std::string_view> fields;
  bool blankBefore = false;

  std::string_view field(Field name) const {
    return name < fields.size() ? fields[name] : std::string_view();
  }
};

std::vector<std::string_view> fieldsOf(std::string_view feature) {
  std::vector<std::string_view> fields;
  while (true) {
    const std::size_t comma = feature.find(',');
    fields.push_back(feature.substr(0, comma));
    if (comma == std::string_view::npos) return fields;
    feature.remove_prefix(comma + 1);
  }
}

// The pronunciation writes a long vowel with "ー", whichever it is, and the reading as kana do. Of
// both: "センセー" and "センセイ" are "センセイ", for "ei" is no long vowel in Hepburn's system.
std::u32string soundsOf(const std::u32string& read, const std::u32string& said) {
  if (read.size() != said.size()) return said;
  std::u32string result = said;
  for (std::size_t i = 0; i < said.size(); ++i) {
    if (said[i] == U'ー' && read[i] == U'イ') result[i] = U'イ';
  }
  return result;
}

bool isKatakana(std::string_view text) {
  std::string katakana;
  for (const char32_t character : companion::katakanaOf(text)) appendCharacter(katakana, character);
  return isKana(text) && katakana == text;
}

bool isVerb(const Word& word) { return word.field(wordClass) == "動詞"; }

// A word as katakana, or as it stands where nobody knows how it is read.
std::u32string katakanaOf(const Word& word) {
  // As the song spells it: the dictionary knows "ヴァイオリン" as "バイオリン".
  if (isKatakana(word.surface)) return withLongVowels(companion::katakanaOf(word.surface));
  const std::u32string read = companion::katakanaOf(word.field(reading));
  if (read.empty() || read == U"*") {
    return withLongVowels(companion::katakanaOf(word.surface));
  }
  // The ending that makes "let us", as in "行こう".
  if (word.field(wordClass) == "助動詞" && word.surface == "う") return U"ー";
  const std::u32string said = companion::katakanaOf(word.field(pronunciation));
  // Words that the dictionary has in kana are said as they are read there.
  if (said == read && !isVerb(word) && isKana(word.surface)) return withLongVowels(read);
  return soundsOf(read, said);
}

// Whether the word is written together with the one before it: an ending.
bool isEnding(const Word& before, const Word& word) {
  if (before.surface.ends_with("っ") || before.surface.ends_with("ッ")) return true;
  if (before.field(wordClass) == "接頭詞") return true;
  const std::string_view class0 = word.field(wordClass);
  const std::string_view class1 = word.field(subclass);
  const bool bends =
      isVerb(before) || before.field(wordClass) == "形容詞" || before.field(wordClass) == "助動詞";
  if (class0 == "助動詞") {
    const bool apart = word.surface.starts_with("だ") || word.surface.starts_with("で") ||
                       word.surface.starts_with("らし") || word.surface.starts_with("べ") ||
                       word.surface == "な";
    return bends && (!apart || before.field(form) == "連用タ接続");
  }
  if (class1 == "接続助詞") {
    return bends && (word.surface == "て" || word.surface == "で" || word.surface == "ば" ||
                     word.surface == "ちゃ" || word.surface == "たって");
  }
  if (class1 == "並立助詞") return bends && (word.surface == "たり" || word.surface == "だり");
  if (class1 == "接尾") return true;
  // "歌ってる", "忘れちゃう"
  return class1 == "非自立" && isVerb(word) &&
         (word.surface.starts_with("て") || word.surface.starts_with("で") ||
          word.surface.starts_with("ち") || word.surface.starts_with("と"));
}

// One person and two have numerals of their own, which the dictionary reads one by one.
void countPeople(std::vector<Word>& words) {
  if (words.size() < 2 || words.back().surface != "人") return;
  Word& number = words[words.size() - 2];
  const bool larger = words.size() > 2 && words[words.size() - 3].field(subclass) == "数";
  if (larger || (number.surface != "一" && number.surface != "二")) return;
  if (number.fields.size() <= pronunciation) return;
  number.fields[reading] = number.surface == "一" ? "ヒトリ" : "フタリ";
  number.fields[pronunciation] = number.fields[reading];
  words.pop_back();
}

class MecabJapanese final : public Japanese {
 public:
  explicit MecabJapanese(std::unique_ptr<MeCab::Tagger> tagger) : tagger_(std::move(tagger)) {}

  std::string romaji(std::string_view text) override {
    std::string result;
    std::u32string joined;  // of the word that is being put together
    const Word* before = nullptr;
    const std::vector<Word> words = wordsOf(text);
    for (const Word& word : words) {
      const bool apart = before == nullptr || word.blankBefore || !isEnding(*before, word);
      if (apart) {
        result.append(romajiOf(std::exchange(joined, {}))).append(before != nullptr ? " " : "");
      }
      joined.append(katakanaOf(word));
      before = &word;
    }
    return withLatinMarks(result.append(romajiOf(joined)));
  }

  // Whether the dictionary has IPADIC's fields, in UTF-8.
  bool works() {
    const std::vector<Word> words = wordsOf("東京");
    return words.size() == 1 && words.front().field(reading) == "トウキョウ" &&
           words.front().field(pronunciation) == "トーキョー";
  }

 private:
  std::vector<Word> wordsOf(std::string_view text) {
    std::vector<Word> words;
    for (const MeCab::Node* node = tagger_->parseToNode(text.data(), text.size()); node != nullptr;
         node = node->next) {
      if (node->stat == MECAB_BOS_NODE || node->stat == MECAB_EOS_NODE) continue;
      words.push_back({std::string_view(node->surface, node->length), fieldsOf(node->feature),
                       node->rlength > node->length});
      countPeople(words);
    }
    return words;
  }

  std::unique_ptr<MeCab::Tagger> tagger_;
};

}  // namespace

std::unique_ptr<Japanese> Japanese::with(const std::string& dictionary) {
  std::vector<std::string> words{"mecab"};
  if (!dictionary.empty()) words.insert(words.end(), {"-d", dictionary});
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  std::unique_ptr<MeCab::Tagger> tagger(
      MeCab::createTagger(static_cast<int>(arguments.size()), arguments.data()));
  if (!tagger) return nullptr;
  auto japanese = std::make_unique<MecabJapanese>(std::move(tagger));
  return japanese->works() ? std::move(japanese) : nullptr;
}

}  // namespace vellora::companion
