#pragma once

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "support/fake_platform.h"

namespace vellora {

// A platform on which the self-test passes: its bitmap has the alphas that the drawing should give
// at the points that are looked at. `set` changes one of them.
class PassingPlatform : public FakePlatform {
 public:
  using Pixel = std::pair<std::int64_t, std::int64_t>;

  explicit PassingPlatform(double scale = 1) : scale_(scale) {
    set(700, 230, 0.26);
    set(700, 140, 0.14);
    set(700, 117, 0.02);
    putBitmap(pixels(1200), pixels(800));
  }

  // The next bitmap gets this size.
  void putBitmap(std::int64_t width, std::int64_t height) {
    bitmap = std::make_unique<FakeBitmap>(width, height);
    bitmap->alphaOf = [this](std::int64_t column, std::int64_t row) {
      asked.emplace_back(column, row);
      noteDrawing();
      for (const auto& [pixel, alpha] : alphas_) {
        if (pixel == Pixel(column, row)) return alpha;
      }
      return 0.0;
    };
  }

  // The alpha at a point of the view.
  void set(double x, double y, double alpha) {
    alphas_.insert(alphas_.begin(), {Pixel(pixels(x), pixels(y)), alpha});
  }

  std::vector<Pixel> asked;

  // What had been drawn when a pixel was looked at; whoever draws ends with its controller.
  std::vector<FakePainter::Measurement> measurements;
  std::vector<CaptionDrawing> drawings;
  std::vector<double> radii;
  std::vector<Rect> destinations;
  Rect viewFrame;

 private:
  void noteDrawing() {
    measurements = painter->measurements;
    drawings = painter->drawings;
    radii = painter->radii;
    destinations = view->surface.destinations;
    viewFrame = view->lastFrame;
  }
  std::int64_t pixels(double points) const { return static_cast<std::int64_t>(points * scale_); }

  double scale_;
  std::vector<std::pair<Pixel, double>> alphas_;  // the first that fits counts
};

}  // namespace vellora
