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
#include "support/verse.h"

namespace vellora {
namespace {

using Lines = std::vector<OverlayLine>;
using verse::makeLines;
using verse::makeRows;
using verse::nameOf;

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
