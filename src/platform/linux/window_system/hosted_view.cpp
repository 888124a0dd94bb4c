#include "platform/linux/window_system/hosted_view.h"

#include <cmath>
#include <utility>

#include "platform/linux/drawing/cairo_surface.h"

namespace vellora {
namespace {

// Zero for what no bitmap can have, which making one then refuses.
std::int64_t pixelCount(double points, double scale) {
  const double pixels = std::round(points * scale);
  return pixels >= 1 && pixels <= 32767 ? static_cast<std::int64_t>(pixels) : 0;
}

}  // namespace

HostedView::HostedView(std::function<std::optional<double>()> screenScale)
    : screenScale_(std::move(screenScale)) {}

void HostedView::setDrawFunction(std::function<void(Surface&)> draw) { draw_ = std::move(draw); }

void HostedView::setFrame(const Rect& frame) {
  if (frame == frame_) return;
  frame_ = frame;
  setNeedsDisplay();
}

Rect HostedView::bounds() const { return {0, 0, frame_.absoluteWidth(), frame_.absoluteHeight()}; }

void HostedView::setNeedsDisplay() {
  if (host_ != nullptr) host_->displaySoon();
}

std::optional<double> HostedView::windowScale() const {
  return host_ != nullptr ? host_->hostScale() : std::nullopt;
}

std::unique_ptr<Bitmap> HostedView::bitmapForCachingDisplay() {
  auto scale = windowScale();
  if (!scale) scale = screenScale_();
  const double pixelsPerPoint = scale.value_or(fallbackScale);
  return CairoBitmap::make(pixelCount(bounds().width, pixelsPerPoint),
                           pixelCount(bounds().height, pixelsPerPoint));
}

void HostedView::cacheDisplay(Bitmap& bitmap) {
  if (bounds().isEmpty()) return;
  CairoSurface surface(static_cast<CairoBitmap&>(bitmap).pixels(),
                       static_cast<double>(bitmap.pixelWidth()) / bounds().width);
  draw(surface);
}

void HostedView::draw(Surface& surface) {
  if (draw_) draw_(surface);
}

}  // namespace vellora
