// How costs grow: with the lines of a snapshot, with the rows in view, with the display's scale.
// Beside the decoding of a snapshot stands RapidJSON's.
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>
#include <nlohmann/json.hpp>
#include <rapidjson/document.h>

#include "exchange/records/json.h"
#include "matching/translation_index.h"
#include "platform/linux/drawing/pango_painter.h"
#include "support/caption_drawing.h"
#include "support/gliding_view.h"
#include "support/verse.h"

namespace vellora {
namespace {

constexpr std::int64_t english = 0;
constexpr std::int64_t traditional = 4;

void eachNumberOfLines(benchmark::internal::Benchmark* bench) {
  for (const std::int64_t lines : {60, 600, 5'000, 50'000}) bench->Arg(lines);
  bench->Unit(benchmark::kMicrosecond);
}

void decodeLines(benchmark::State& state) {
  const OverlaySnapshot snapshot{
      1, 1000, true, "Night Drive", "River Band", 32, 0, verse::makeLines(english, state.range(0))};
  const std::string bytes = encode(snapshot).value();
  for ([[maybe_unused]] const auto& turn : state) {
    const auto decoded = decode<OverlaySnapshot>(bytes);
    if (!decoded) state.SkipWithError("no snapshot");
    benchmark::DoNotOptimize(decoded);
  }
}
BENCHMARK(decodeLines)->Apply(eachNumberOfLines);

// The parser that decoding uses, by itself: no text is kept.
void floorNlohmannJson(benchmark::State& state) {
  const OverlaySnapshot snapshot{
      1, 1000, true, "Night Drive", "River Band", 32, 0, verse::makeLines(english, state.range(0))};
  const std::string bytes = encode(snapshot).value();
  for ([[maybe_unused]] const auto& turn : state) {
    if (!nlohmann::json::accept(bytes)) state.SkipWithError("no document");
  }
}
BENCHMARK(floorNlohmannJson)->Apply(eachNumberOfLines);

// The same record by RapidJSON: a document, and its texts taken over.
void peerRapidJson(benchmark::State& state) {
  OverlaySnapshot snapshot{
      1, 1000, true, "Night Drive", "River Band", 32, 0, verse::makeLines(english, state.range(0))};
  const std::string bytes = encode(snapshot).value();
  const auto text = [](const rapidjson::Value& value) {
    return std::string(value.GetString(), value.GetStringLength());
  };
  for ([[maybe_unused]] const auto& turn : state) {
    rapidjson::Document document;
    document.Parse(bytes.data(), bytes.size());
    if (document.HasParseError()) state.SkipWithError("no document");
    std::vector<OverlayLine> lines;
    for (const auto& line : document["lines"].GetArray()) {
      lines.push_back({text(line["source"]), text(line["translation"])});
    }
    const OverlaySnapshot decoded{
        document["version"].GetInt64(),         document["updatedAt"].GetDouble(),
        document["enabled"].GetBool(),          text(document["musicTitle"]),
        text(document["musicArtist"]),          document["fontSize"].GetDouble(),
        document["verticalOffset"].GetDouble(), std::move(lines)};
    benchmark::DoNotOptimize(decoded);
  }
}
BENCHMARK(peerRapidJson)->Apply(eachNumberOfLines);

void indexLines(benchmark::State& state, std::int64_t language) {
  const OverlayLines lines(verse::makeLines(language, state.range(0)));
  for ([[maybe_unused]] const auto& turn : state) {
    benchmark::DoNotOptimize(TranslationIndex(lines));
  }
}
BENCHMARK_CAPTURE(indexLines, English, english)->Apply(eachNumberOfLines);
BENCHMARK_CAPTURE(indexLines, Traditional, traditional)->Apply(eachNumberOfLines);

void lookUpAmongLines(benchmark::State& state, std::int64_t language) {
  const auto lines = verse::makeLines(language, state.range(0));
  const auto rows = verse::makeRows(lines);
  const TranslationIndex index(lines);
  std::size_t at = 0;
  for ([[maybe_unused]] const auto& turn : state) {
    benchmark::DoNotOptimize(index.translation(rows[at++ % rows.size()]));
  }
}
BENCHMARK_CAPTURE(lookUpAmongLines, English, english)->Apply(eachNumberOfLines);
BENCHMARK_CAPTURE(lookUpAmongLines, Traditional, traditional)->Apply(eachNumberOfLines);

void composeRows(benchmark::State& state) {
  GlidingView view(static_cast<std::size_t>(state.range(0)));
  for ([[maybe_unused]] const auto& turn : state) {
    if (!view.compose()) state.SkipWithError("a row without a caption");
  }
}
BENCHMARK(composeRows)->Arg(15)->Arg(60)->Arg(150)->Arg(300)->Unit(benchmark::kMicrosecond);

void paintAtScale(benchmark::State& state) {
  PangoPainter painter;
  const auto drawing = captionDrawing("The current translation stays clear", 680, 44, 24,
                                      static_cast<double>(state.range(0)));
  for ([[maybe_unused]] const auto& turn : state) {
    benchmark::DoNotOptimize(painter.paint(drawing));
  }
}
BENCHMARK(paintAtScale)->DenseRange(1, 3)->Unit(benchmark::kMicrosecond);

void blurAtScale(benchmark::State& state) {
  PangoPainter painter;
  const auto scale = static_cast<double>(state.range(0));
  const auto sharp =
      painter.paint(captionDrawing("The current translation stays clear", 680, 44, 24, scale));
  for ([[maybe_unused]] const auto& turn : state) {
    benchmark::DoNotOptimize(painter.blur(*sharp, 1.3 * scale));
  }
}
BENCHMARK(blurAtScale)->DenseRange(1, 3)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace vellora
