// Looking rows up in a snapshot. Beside the index stand the plain search through all lines, which
// computes every key where it needs it, and as a floor the search for a ready key in a hash map.
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include <benchmark/benchmark.h>

#include "matching/normalization.h"
#include "matching/plain_translation.h"
#include "matching/translation_index.h"

namespace vellora {
namespace {

using Lines = std::vector<OverlayLine>;

// Verse of about 40 characters, and numbers in letters, so that every line differs.
struct Language {
  std::vector<std::string> words;
  std::string separator;
  std::size_t wordsInALine;
};

Language language(std::int64_t which) {
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

const char* nameOf(std::int64_t which) {
  constexpr const char* names[] = {"English",     "French", "Japanese", "Simplified",
                                   "Traditional", "Korean", "Hindi"};
  return names[which];
}

std::string lineText(const Language& words, std::size_t number) {
  std::string text;
  for (std::size_t at = 0; at < words.wordsInALine; ++at) {
    if (at > 0) text += words.separator;
    text += words.words[(number + at * (1 + number % 7)) % words.words.size()];
    number /= at % 2 == 0 ? 10 : 1;
  }
  return text;
}

Lines makeLines(std::int64_t which, std::int64_t count) {
  const Language words = language(which);
  Lines lines;
  for (std::int64_t number = 0; number < count; ++number) {
    lines.push_back({lineText(words, static_cast<std::size_t>(number * 7919)),
                     "Translation of line " + std::to_string(number)});
  }
  return lines;
}

// Rows as the player shows them: single lines from everywhere, and now and then two of them joined.
std::vector<std::string> makeRows(const Lines& lines) {
  std::vector<std::string> rows;
  for (std::size_t at = 0; at < 64; ++at) {
    const std::size_t line = at * 997 % (lines.size() - 1);
    rows.push_back(lines[line].source);
    if (at % 8 == 7) rows.back() += " " + lines[line + 1].source;
  }
  return rows;
}

// First argument the language, second the number of lines.
void lookUpRow(benchmark::State& state) {
  const Lines lines = makeLines(state.range(0), state.range(1));
  const std::vector<std::string> rows = makeRows(lines);
  const TranslationIndex index(lines);
  std::size_t at = 0;
  for (auto _ : state) benchmark::DoNotOptimize(index.translation(rows[at++ % rows.size()]));
  state.SetLabel(nameOf(state.range(0)));
}
BENCHMARK(lookUpRow)->ArgsProduct({{0, 1, 2, 3, 4, 5, 6}, {60, 5000}});

std::vector<std::string> keysOf(const std::vector<std::string>& rows) {
  std::vector<std::string> keys;
  for (const std::string& row : rows) keys.push_back(OverlayMatching::normalized(row));
  return keys;
}

void lookUpReadyKey(benchmark::State& state) {
  const Lines lines = makeLines(state.range(0), state.range(1));
  const std::vector<std::string> keys = keysOf(makeRows(lines));
  const TranslationIndex index(lines);
  std::size_t at = 0;
  for (auto _ : state) benchmark::DoNotOptimize(index.translationForKey(keys[at++ % keys.size()]));
  state.SetLabel(nameOf(state.range(0)));
}
BENCHMARK(lookUpReadyKey)->ArgsProduct({{0, 4}, {60, 5000}});

void floorFindReadyKeyInAMap(benchmark::State& state) {
  const Lines lines = makeLines(state.range(0), state.range(1));
  const std::vector<std::string> keys = keysOf(makeRows(lines));
  std::unordered_map<std::string, std::string> map;
  for (const OverlayLine& line : lines) {
    map.emplace(OverlayMatching::normalized(line.source), line.translation);
  }
  std::size_t at = 0;
  for (auto _ : state) {
    const auto found = map.find(keys[at++ % keys.size()]);
    std::optional<std::string> result;
    if (found != map.end()) result = found->second;
    benchmark::DoNotOptimize(result);
  }
  state.SetLabel(nameOf(state.range(0)));
}
BENCHMARK(floorFindReadyKeyInAMap)->ArgsProduct({{0, 4}, {60, 5000}});

void peerPlainSearch(benchmark::State& state) {
  const Lines lines = makeLines(state.range(0), state.range(1));
  const std::vector<std::string> rows = makeRows(lines);
  std::size_t at = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(testing::plainTranslation(rows[at++ % rows.size()], lines));
  }
  state.SetLabel(nameOf(state.range(0)));
}
BENCHMARK(peerPlainSearch)->ArgsProduct({{0, 4}, {60}});

// The lines have changed: their index is made, and a row is looked up.
void firstLookUpAfterAChange(benchmark::State& state) {
  const Lines lines = makeLines(state.range(0), state.range(1));
  const std::string row = lines.back().source;
  TranslationIndex index;
  for (auto _ : state) {
    index = TranslationIndex(lines);
    benchmark::DoNotOptimize(index.translation(row));
  }
  state.SetLabel(nameOf(state.range(0)));
}
BENCHMARK(firstLookUpAfterAChange)->ArgsProduct({{0, 1, 2, 3, 4, 5, 6}, {60, 5000}});

void normalizeARow(benchmark::State& state) {
  const std::vector<std::string> rows = makeRows(makeLines(state.range(0), 60));
  std::size_t at = 0;
  for (auto _ : state)
    benchmark::DoNotOptimize(OverlayMatching::normalized(rows[at++ % rows.size()]));
  state.SetLabel(nameOf(state.range(0)));
}
BENCHMARK(normalizeARow)->DenseRange(0, 6);

}  // namespace
}  // namespace vellora
