// What a caption costs: painted sharp beside Pango's own layout and show of the same text, blurred
// beside OpenCV's Gaussian, and drawn again from the cache.
#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>
#include <opencv2/core.hpp>
#include <opencv2/imgproc.hpp>
#include <pango/pangocairo.h>

#include "platform/linux/drawing/cairo_surface.h"
#include "platform/linux/drawing/gaussian_blur.h"
#include "platform/linux/drawing/pango_painter.h"
#include "render/caption_view.h"
#include "support/fake_native_view.h"
#include "support/fake_workspace.h"

namespace vellora {
namespace {

constexpr double font = 24;
constexpr Rect place{70, 210, 680, 44};
constexpr std::int64_t pictureWidth = 700;
constexpr std::int64_t pictureHeight = 64;

struct Text {
  const char* name;
  const char* text;
};
constexpr Text texts[] = {
    {"English", "The current translation stays clear"},
    {"Chinese", "我愿意为你，忘记我姓名，就算多一秒停留在你怀里"},
    {"Arabic", "وأنا أحبك كثيرا يا صديقي القديم والليل طويل"},
    {"emoji", "I 💚 you 🎵 forever and ever and ever"},
};

CaptionDrawing drawingOf(const char* text) {
  CaptionDrawing drawing;
  drawing.text = text;
  drawing.size = {pictureWidth, pictureHeight};
  drawing.pixelWidth = pictureWidth;
  drawing.pixelHeight = pictureHeight;
  drawing.plate = {10, 10, place.width, place.height};
  drawing.cornerRadius = 7;
  drawing.plateColor = {0.32, 0.32, 0.32, 0.26};
  drawing.textRect = {19, 14, place.width - 18, place.height - 8};
  drawing.fontSize = font;
  drawing.textColor = {0.82, 1, 0.92, 1};
  return drawing;
}

// The floor: a layout in the same font and width, laid out and shown on a picture that is there.
void pangoAlone(benchmark::State& state) {
  const Text& text = texts[static_cast<std::size_t>(state.range(0))];
  state.SetLabel(text.name);
  const CairoSurfacePtr pixels = makePixels(pictureWidth, pictureHeight);
  const CairoContextPtr context(cairo_create(pixels.get()));
  cairo_set_source_rgb(context.get(), 0.82, 1, 0.92);
  const PangoFontPtr description(pango_font_description_from_string("Inter Medium"));
  pango_font_description_set_absolute_size(description.get(), font * PANGO_SCALE);
  for ([[maybe_unused]] const auto& turn : state) {
    const PangoLayoutPtr layout(pango_cairo_create_layout(context.get()));
    pango_layout_set_font_description(layout.get(), description.get());
    pango_layout_set_width(layout.get(), static_cast<int>((place.width - 18) * PANGO_SCALE));
    pango_layout_set_text(layout.get(), text.text, -1);
    cairo_move_to(context.get(), 19, 14);
    pango_cairo_show_layout(context.get(), layout.get());
  }
}
BENCHMARK(pangoAlone)->DenseRange(0, 3);

void sharpCaption(benchmark::State& state) {
  const Text& text = texts[static_cast<std::size_t>(state.range(0))];
  state.SetLabel(text.name);
  PangoPainter painter;
  const CaptionDrawing drawing = drawingOf(text.text);
  for ([[maybe_unused]] const auto& turn : state) {
    benchmark::DoNotOptimize(painter.paint(drawing));
  }
}
BENCHMARK(sharpCaption)->DenseRange(0, 3);

// A caption's pixels, packed.
std::vector<std::uint8_t> captionPixels() {
  PangoPainter painter;
  const auto image = painter.paint(drawingOf(texts[0].text));
  cairo_surface_t* pixels = static_cast<const CairoImage&>(*image).pixels();
  const unsigned char* data = cairo_image_surface_get_data(pixels);
  const auto size =
      static_cast<std::size_t>(cairo_image_surface_get_stride(pixels)) * pictureHeight;
  return {data, data + size};
}

// Standard deviations in hundredths of a pixel.
constexpr std::int64_t deviations[] = {33, 130, 260, 520};

// A picture without a blank row or column, which the blur of a caption may pass over.
std::vector<std::uint8_t> noisePixels() {
  std::vector<std::uint8_t> pixels(pictureWidth * pictureHeight * 4);
  std::uint32_t state = 1;
  for (std::uint8_t& byte : pixels) {
    state = state * 1664525 + 1013904223;
    byte = static_cast<std::uint8_t>(state >> 24);
  }
  return pixels;
}

using Picture = std::vector<std::uint8_t> (*)();

void openCvBlur(benchmark::State& state, Picture picture) {
  cv::setNumThreads(1);
  std::vector<std::uint8_t> pixels = picture();
  const cv::Mat source(pictureHeight, pictureWidth, CV_8UC4, pixels.data());
  cv::Mat destination(pictureHeight, pictureWidth, CV_8UC4);
  const double sigma = static_cast<double>(state.range(0)) / 100;
  for ([[maybe_unused]] const auto& turn : state) {
    cv::GaussianBlur(source, destination, cv::Size(), sigma, sigma, cv::BORDER_CONSTANT);
    benchmark::ClobberMemory();
  }
}

void ownBlur(benchmark::State& state, Picture picture, const BlurLoops& loops) {
  const std::vector<std::uint8_t> source = picture();
  std::vector<std::uint8_t> destination(source.size());
  const double sigma = static_cast<double>(state.range(0)) / 100;
  for ([[maybe_unused]] const auto& turn : state) {
    gaussianBlur({source.data(), pictureWidth, pictureHeight, pictureWidth * 4},
                 {destination.data(), pictureWidth, pictureHeight, pictureWidth * 4}, sigma, loops);
    benchmark::ClobberMemory();
  }
}

void eachDeviation(benchmark::internal::Benchmark* bench) {
  for (const std::int64_t deviation : deviations) bench->Arg(deviation);
}
BENCHMARK_CAPTURE(openCvBlur, caption, captionPixels)->Apply(eachDeviation);
BENCHMARK_CAPTURE(ownBlur, caption, captionPixels, fastestBlurLoops())->Apply(eachDeviation);
BENCHMARK_CAPTURE(ownBlur, captionWithPlainLoops, captionPixels, plainBlurLoops())
    ->Apply(eachDeviation);
BENCHMARK_CAPTURE(openCvBlur, noise, noisePixels)->Apply(eachDeviation);
BENCHMARK_CAPTURE(ownBlur, noise, noisePixels, fastestBlurLoops())->Apply(eachDeviation);

// Takes down what is drawn, as the panel does before it presents what changed.
class NotedSurface final : public Surface {
 public:
  void drawImage(const CaptionImage& image, const Rect& destination) override {
    notes.emplace_back(&image, destination);
  }
  std::vector<std::pair<const CaptionImage*, Rect>> notes;
};

// Eight captions of a view whose pictures are all kept, drawn again at scale 1; the counter is the
// time of one caption. As the panel takes them down; on a window's worth of pixels that are clear,
// as a view's are before it is drawn; and over what is there.
class Redraw : public benchmark::Fixture {
 public:
  Redraw() {
    nativeView.scale = 1.0;
    std::vector<Caption> captions;
    for (int i = 0; i < 8; ++i) {
      captions.push_back({"Caption number " + std::to_string(i),
                          {place.x, 20.0 + 90 * i, place.width, place.height},
                          font,
                          i * 0.125});
    }
    view.setCaptions(captions);
  }

  void countCaptions(benchmark::State& state) {
    state.counters["caption"] = benchmark::Counter(
        static_cast<double>(view.captions().size()),
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
  }

  Log log;
  PangoPainter painter;
  FakeNativeView nativeView{log};
  FakeWorkspace workspace{log};
  CaptionView view{painter, nativeView, workspace};
};

BENCHMARK_F(Redraw, takenDown)(benchmark::State& state) {
  for ([[maybe_unused]] const auto& turn : state) {
    NotedSurface surface;
    view.draw(surface);
    benchmark::DoNotOptimize(surface.notes.data());
  }
  countCaptions(state);
}
BENCHMARK_F(Redraw, onBitmap)(benchmark::State& state) {
  const auto bitmap = CairoBitmap::make(1200, 800);
  for ([[maybe_unused]] const auto& turn : state) {
    CairoSurface surface(bitmap->pixels(), 1);
    view.draw(surface);
  }
  countCaptions(state);
}

}  // namespace
}  // namespace vellora
