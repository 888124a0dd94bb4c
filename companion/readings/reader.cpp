#include "companion/readings/reader.h"

#include <array>
#include <utility>

#include "companion/readings/kana.h"
#include "companion/readings/korean.h"
#include "companion/readings/scripts.h"
#include "companion/song/text.h"

namespace vellora::companion {

std::optional<ReadingKind> readingKindOf(std::string_view name) {
  struct Name {
    std::string_view name;
    ReadingKind kind;
  };
  constexpr auto names = std::to_array<Name>({{"none", ReadingKind::none},
                                              {"pinyin", ReadingKind::pinyin},
                                              {"romaji", ReadingKind::romaji},
                                              {"romaja", ReadingKind::romaja},
                                              {"latin", ReadingKind::latin},
                                              {"auto", ReadingKind::automatic}});
  for (const Name& each : names) {
    if (each.name == name) return each.kind;
  }
  return std::nullopt;
}

Reader::Reader(ReadingKind kind, std::string dictionary)
    : kind_(kind), dictionary_(std::move(dictionary)) {}

Reader::Manner Reader::mannerOf(std::string_view line, bool songHasKana) const {
  const Scripts scripts = scriptsOf(line);
  const auto wanted = [this](ReadingKind kind) {
    return kind_ == kind || kind_ == ReadingKind::automatic;
  };
  if (scripts.hangul) return wanted(ReadingKind::romaja) ? Manner::korean : Manner::none;
  const bool japanese =
      scripts.kana || (scripts.han && (kind_ == ReadingKind::romaji || songHasKana));
  if (japanese && wanted(ReadingKind::romaji)) return Manner::japanese;
  if (scripts.kana) return Manner::none;
  if (scripts.han) return wanted(ReadingKind::pinyin) ? Manner::chinese : Manner::none;
  return scripts.other && wanted(ReadingKind::latin) ? Manner::other : Manner::none;
}

std::string Reader::romaji(std::string_view line) {
  if (!japanese_) japanese_ = Japanese::with(dictionary_);
  if (*japanese_) return (*japanese_)->romaji(line);
  if (scriptsOf(line).han) {
    problem_ =
        "Japanese with kanji gets no readings: MeCab's dictionary IPADIC in UTF-8 is missing "
        "(on Debian the package mecab-ipadic-utf8)";
    return {};
  }
  return withLatinMarks(romajiOf(withLongVowels(katakanaOf(line))));
}

std::vector<std::string> Reader::read(const std::vector<std::string>& lines,
                                      const std::function<bool()>& goOn) {
  problem_.clear();
  Scripts song;
  for (const std::string& line : lines) song |= scriptsOf(line);
  if (song.other) alphabets_.setSong(lines);
  std::vector<std::string> readings(lines.size());
  for (std::size_t i = 0; i < lines.size() && goOn(); ++i) {
    std::string reading;
    switch (mannerOf(lines[i], song.kana)) {
      case Manner::none:
        continue;
      case Manner::chinese:
        reading = withLatinMarks(chinese_.pinyin(lines[i]));
        break;
      case Manner::japanese:
        reading = romaji(lines[i]);
        break;
      case Manner::korean:
        reading = withLatinMarks(romajaOf(lines[i]));
        break;
      case Manner::other:
        reading = alphabets_.latin(lines[i]);
    }
    reading = cleaned(reading);
    if (reading != lines[i]) readings[i] = std::move(reading);
  }
  return readings;
}

}  // namespace vellora::companion
