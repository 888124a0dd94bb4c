#pragma once

#include <functional>
#include <memory>
#include <string_view>
#include <utility>

#include "main/passing_platform.h"

namespace vellora {

// A passing platform whose view really draws, and whose drawings the test keeps.
class DrawingPlatform final : public PassingPlatform {
 public:
  std::unique_ptr<NativeView> makeView() override {
    inner.nextBitmap = std::move(bitmap);
    return std::make_unique<View>(inner, surface);
  }
  std::unique_ptr<CaptionPainter> makeCaptionPainter() override {
    return std::make_unique<Painter>(drawn);
  }

  FakeNativeView inner{log};
  FakeSurface surface{log};
  FakePainter drawn{log};

 private:
  class View final : public NativeView {
   public:
    View(FakeNativeView& inner_, FakeSurface& surface_) : view_(inner_), target_(surface_) {}
    void setDrawFunction(std::function<void(Surface&)> draw) override {
      view_.setDrawFunction(std::move(draw));
    }
    void setFrame(const Rect& frame) override { view_.setFrame(frame); }
    Rect bounds() const override { return view_.bounds(); }
    void setNeedsDisplay() override { view_.setNeedsDisplay(); }
    std::optional<double> windowScale() const override { return view_.windowScale(); }
    std::unique_ptr<Bitmap> bitmapForCachingDisplay() override {
      return view_.bitmapForCachingDisplay();
    }
    void cacheDisplay(Bitmap&) override { view_.drawFunction(target_); }

   private:
    FakeNativeView& view_;
    FakeSurface& target_;
  };

  class Painter final : public CaptionPainter {
   public:
    explicit Painter(FakePainter& kept) : kept_(kept) {}
    double measureHeight(std::string_view text, double fontSize, double width,
                         double maximumHeight) override {
      return kept_.measureHeight(text, fontSize, width, maximumHeight);
    }
    std::shared_ptr<const CaptionImage> paint(const CaptionDrawing& drawing) override {
      return kept_.paint(drawing);
    }
    std::shared_ptr<const CaptionImage> blur(const CaptionImage& image, double radius) override {
      return kept_.blur(image, radius);
    }

   private:
    FakePainter& kept_;
  };
};

}  // namespace vellora
