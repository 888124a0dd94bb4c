#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "platform/native_view.h"
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
  std::optional<std::vector<std::uint8_t>> encoded = std::vector<std::uint8_t>{1, 2, 3};

 private:
  std::int64_t width_;
  std::int64_t height_;
};

// A view on no screen. The test asks for the drawing itself, through `drawFunction`.
class FakeNativeView final : public NativeView {
 public:
  explicit FakeNativeView(Log& log) : log_(log) {}

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
    return std::move(nextBitmap);
  }
  void cacheDisplay(Bitmap&) override { log_.push_back("cache display"); }

  std::function<void(Surface&)> drawFunction;
  Rect lastFrame;
  std::optional<double> scale;
  std::unique_ptr<Bitmap> nextBitmap;

 private:
  Log& log_;
};

}  // namespace vellora
