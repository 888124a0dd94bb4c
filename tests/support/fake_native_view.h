#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "platform/native_view.h"
#include "support/fake_painter.h"
#include "support/log.h"

namespace vellora {

// A bitmap without pixels: every question inside its bounds is answered by `alphaOf`.
class FakeBitmap final : public Bitmap {
 public:
  FakeBitmap(std::int64_t width, std::int64_t height) : width_(width), height_(height) {}

  std::int64_t pixelWidth() const override { return width_; }
  std::int64_t pixelHeight() const override { return height_; }
  std::optional<double> alpha(std::int64_t column, std::int64_t row) const override {
    if (boundless) return alphaOf(column, row);
    if (column < 0 || row < 0 || column >= width_ || row >= height_) return std::nullopt;
    return alphaOf(column, row);
  }
  std::optional<std::vector<std::uint8_t>> png() const override { return encoded; }

  bool boundless = false;  // has pixels beyond its size too
  std::function<double(std::int64_t, std::int64_t)> alphaOf = [](auto, auto) { return 0.0; };
  std::optional<std::vector<std::uint8_t>> encoded =
      std::vector<std::uint8_t>{0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};

 private:
  std::int64_t width_;
  std::int64_t height_;
};

// A view on no screen, whose bitmaps have a pixel to a point. The test asks for the drawing itself,
// through `drawFunction`; a cached display is drawn on `surface`.
class FakeNativeView final : public NativeView {
 public:
  explicit FakeNativeView(Log& log) : surface(log), log_(log) {}

  void setDrawFunction(std::function<void(Surface&)> draw) override {
    drawFunction = std::move(draw);
  }
  void setFrame(const Rect& frame) override {
    log_.push_back("view frame");
    lastFrame = frame;
  }
  Rect bounds() const override { return {0, 0, lastFrame.width, lastFrame.height}; }
  void setNeedsDisplay() override { log_.push_back("needs display"); }
  std::optional<double> windowScale() const override { return scale; }
  std::unique_ptr<Bitmap> bitmapForCachingDisplay() override {
    log_.push_back("make bitmap");
    if (!hasBitmaps) return nullptr;
    if (nextBitmap) return std::move(nextBitmap);
    return std::make_unique<FakeBitmap>(static_cast<std::int64_t>(lastFrame.width),
                                        static_cast<std::int64_t>(lastFrame.height));
  }
  void cacheDisplay(Bitmap&) override {
    log_.push_back("cache display");
    if (drawFunction) drawFunction(surface);
  }

  std::function<void(Surface&)> drawFunction;
  Rect lastFrame;
  std::optional<double> scale;
  std::unique_ptr<Bitmap> nextBitmap;  // in place of a clear one of the view's size
  bool hasBitmaps = true;
  FakeSurface surface;

 private:
  Log& log_;
};

}  // namespace vellora
