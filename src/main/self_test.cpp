#include "main/self_test.h"

#include <cstdlib>
#include <fstream>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "base/fatal.h"
#include "render/pixels.h"

namespace vellora {

namespace {

struct PixelCheck {
  Point point;
  double least;
  double most;
};

constexpr double aboveNothing = std::numeric_limits<double>::denorm_min();
constexpr double unlimited = std::numeric_limits<double>::infinity();

// Points of the caption view and the alpha, both ends included, that each must have.
constexpr PixelCheck pixelChecks[] = {
    {{0, 0}, 0, 0},           // the background outside every caption stays transparent
    {{700, 230}, 0.2, 0.3},   // the sharp caption's plate, away from its text
    {{700, 140}, 0.1, 0.18},  // the softest caption's plate is fainter
    {{700, 117}, aboveNothing, unlimited},  // its blur spills beyond its rectangle
    {{700, 207}, 0, 0},                     // nothing spills from the sharp caption
};

void check(bool holds) {
  if (!holds) std::abort();
}

MusicLayout sampleLayout() {
  return {.window = {0, 30, 1200, 800},
          .viewport = {600, 100, 580, 650},
          .title = "Test song, Test artist",
          .rows = {{"Hello world", {620, 220, 360, 60}}, {"Another line", {620, 360, 360, 60}}}};
}

OverlaySnapshot sampleSnapshot(double now) {
  return {.version = 1,
          .updatedAt = now,
          .enabled = true,
          .musicTitle = "Test song",
          .musicArtist = "Test artist",
          .fontSize = 32,
          .verticalOffset = 0,
          .lines = {{"Hello world", "Hallo Welt"}}};
}

std::vector<Caption> sampleCaptions() {
  return {{"The previous line gently fades away", {70, 120, 680, 44}, 24, 1.0},
          {"The current translation stays clear", {70, 210, 680, 44}, 24, 0.0},
          {"The next line blends into the background", {70, 300, 680, 44}, 24, 0.75}};
}

void writePng(const Bitmap& bitmap, const std::filesystem::path& location) {
  const std::optional<std::vector<std::uint8_t>> png = bitmap.png();
  if (!png) return;
  std::ofstream file(location, std::ios::binary | std::ios::trunc);
  file.write(reinterpret_cast<const char*>(png->data()), static_cast<std::streamsize>(png->size()));
  file.close();
  if (!file) fatalError("Could not write " + location.string());
}

}  // namespace

double alphaAt(const Bitmap& bitmap, double viewWidth, Point point) {
  const double scale = static_cast<double>(bitmap.pixelWidth()) / viewWidth;
  const std::int64_t column = wholePixels(point.x * scale);
  const std::int64_t row = wholePixels(point.y * scale);
  return bitmap.alpha(column, row).value_or(-1);
}

void checkComposition(const OverlayDelegate& controller) {
  check(controller.panel->ignoresMouseEvents());
  check(!controller.panel->isOpaque());
  check(controller.canvas.captions().size() == 1);
}

PixelSize runSelfTest(Platform& platform, const std::optional<std::filesystem::path>& picture,
                      std::ostream& output) {
  const auto controller = std::make_shared<OverlayDelegate>(std::nullopt, platform, output);
  CaptionView& canvas = controller->canvas;
  controller->configurePanel();
  controller->render(sampleLayout(), sampleSnapshot(platform.makeClock()->now()), false);
  checkComposition(*controller);

  canvas.setCaptions(sampleCaptions());
  canvas.setNeedsDisplay();
  const std::unique_ptr<Bitmap> bitmap = canvas.nativeView().bitmapForCachingDisplay();
  if (!bitmap) fatalError("Could not allocate native rendering surface");
  canvas.nativeView().cacheDisplay(*bitmap);

  check(bitmap->pixelWidth() >= 1);
  check(bitmap->pixelHeight() >= 1);
  for (const PixelCheck& pixel : pixelChecks) {
    const double alpha = alphaAt(*bitmap, canvas.bounds().width, pixel.point);
    check(alpha >= pixel.least && alpha <= pixel.most);
  }

  if (picture) writePng(*bitmap, *picture);
  return {bitmap->pixelWidth(), bitmap->pixelHeight()};
}

}  // namespace vellora
