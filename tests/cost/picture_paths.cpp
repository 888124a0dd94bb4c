// What is done with captions' pictures: drawing them from the cache, painting a sharp one, and
// blurring one.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "cost/hot_path.h"
#include "platform/linux/drawing/gaussian_blur.h"
#include "platform/linux/drawing/pango_painter.h"
#include "render/caption_view.h"
#include "support/caption_drawing.h"
#include "support/fake_native_view.h"
#include "support/fake_workspace.h"

namespace vellora {
namespace {

// Counts what is drawn on it.
struct CountingSurface final : Surface {
  void drawImage(const CaptionImage&, const Rect&) override { ++drawn; }
  int drawn = 0;
};

// Eight captions, whose pictures are all kept.
class Redraw {
 public:
  Redraw() {
    nativeView_.scale = 1.0;
    std::vector<Caption> captions;
    for (int i = 0; i < 8; ++i) {
      captions.push_back(
          {"Caption number " + std::to_string(i), {70, 20.0 + 90 * i, 680, 44}, 24, i * 0.125});
    }
    view_.setCaptions(captions);
  }
  bool run() {
    CountingSurface surface;
    view_.draw(surface);
    log_.clear();
    return surface.drawn == 8 && view_.cachedImageCount() == 8;
  }

 private:
  Log log_;
  FakePainter painter_{log_};
  FakeNativeView nativeView_{log_};
  FakeWorkspace workspace_{log_};
  CaptionView view_{painter_, nativeView_, workspace_};
};

HotPath painting(const std::string& name, const std::string& text) {
  const auto painter = std::make_shared<PangoPainter>();
  return {"paint a sharp caption, " + name, 10,
          [painter, drawing = captionDrawing(text, 680, 44, 24)] {
            return painter->paint(drawing) != nullptr;
          }};
}

constexpr std::size_t width = 700;
constexpr std::size_t height = 64;

// A caption's shape: clear around a plate of full rows.
std::vector<std::uint8_t> plate() {
  std::vector<std::uint8_t> pixels(width * height * 4);
  std::uint32_t state = 1;
  for (std::size_t row = 10; row < height - 10; ++row) {
    for (std::size_t byte = 4 * 10; byte < 4 * (width - 10); ++byte) {
      state = state * 1664525 + 1013904223;
      pixels[row * width * 4 + byte] = static_cast<std::uint8_t>(state >> 24);
    }
  }
  return pixels;
}

HotPath blurring(const std::string& name, double sigma) {
  return {"blur a caption, " + name, 2,
          [source = plate(), destination = std::vector<std::uint8_t>(width * height * 4),
           sigma]() mutable {
            gaussianBlur({source.data(), width, height, width * 4},
                         {destination.data(), width, height, width * 4}, sigma,
                         plainBlurLoops());  // which every machine counts alike
            // Above the plate's edge, where only what the blur has spread is seen.
            return destination[(9 * width + width / 2) * 4] > 0;
          }};
}

}  // namespace

std::vector<HotPath> picturePaths() {
  const auto redraw = std::make_shared<Redraw>();
  return {{"draw 8 captions from the cache", 50, [redraw] { return redraw->run(); }},
          painting("English", "The current translation stays clear"),
          painting("Chinese", "我愿意为你，忘记我姓名，就算多一秒停留在你怀里"),
          blurring("deviation 1.3", 1.3),
          blurring("deviation 2.6", 2.6),
          blurring("deviation 5.2", 5.2)};
}

}  // namespace vellora
