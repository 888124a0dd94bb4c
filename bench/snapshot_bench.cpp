#include <memory>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "exchange/record_reader.h"
#include "exchange/records/json.h"
#include "exchange/records/snapshot_decoder.h"
#include "support/temporary_folder.h"

// A snapshot that its companion keeps fresh: the same lines beside another time, again and again.
// Beside it: all of it decoded each time.
namespace vellora {
namespace {

std::string snapshotText(std::size_t lines, double time) {
  OverlaySnapshot snapshot{1, time, true, "Night Drive", "River Band", 32, 0, {}};
  auto& all = snapshot.lines.edit();
  for (std::size_t i = 0; i < lines; ++i) {
    const std::string number = std::to_string(i);
    all.push_back({"Line " + number + " of a song that is sung in one language",
                   "Zeile " + number + " eines Liedes, wie sie in der anderen klingt"});
  }
  return encode(snapshot).value();
}

// Two texts that take turns.
struct Texts {
  explicit Texts(const benchmark::State& state)
      : even(snapshotText(static_cast<std::size_t>(state.range(0)), 1732291200.125)),
        odd(snapshotText(static_cast<std::size_t>(state.range(0)), 1732291201.6)) {}
  std::string even;
  std::string odd;
};

void decodeWhole(benchmark::State& state) {
  const Texts texts(state);
  bool odd = false;
  for (auto _ : state) {
    odd = !odd;
    auto snapshot = decode<OverlaySnapshot>(odd ? texts.odd : texts.even);
    if (!snapshot) state.SkipWithError("no snapshot");
    benchmark::DoNotOptimize(snapshot);
  }
}

void decodeAfterAnotherTime(benchmark::State& state) {
  const Texts texts(state);
  SnapshotDecoder decoder;
  decoder.decode({}, texts.even);
  bool odd = false;
  for (auto _ : state) {
    odd = !odd;
    auto snapshot =
        odd ? decoder.decode(texts.even, texts.odd) : decoder.decode(texts.odd, texts.even);
    if (!snapshot) state.SkipWithError("no snapshot");
    benchmark::DoNotOptimize(snapshot);
  }
}

// What each tick does about a file that is as it was.
void readUnchanged(benchmark::State& state) {
  const TemporaryFolder folder;
  writeText(folder / "snapshot.json", Texts(state).even);
  RecordReader<OverlaySnapshot> reader;
  reader.read(folder / "snapshot.json");
  for (auto _ : state) {
    auto snapshot = reader.read(folder / "snapshot.json");
    if (!snapshot) state.SkipWithError("no snapshot");
    benchmark::DoNotOptimize(snapshot);
  }
}

BENCHMARK(decodeWhole)->Arg(60)->Arg(50'000)->Unit(benchmark::kMicrosecond);
BENCHMARK(decodeAfterAnotherTime)->Arg(60)->Arg(50'000)->Unit(benchmark::kMicrosecond);
BENCHMARK(readUnchanged)->Arg(60)->Arg(50'000)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace vellora
