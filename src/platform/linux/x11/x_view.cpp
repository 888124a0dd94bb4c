#include "platform/linux/x11/x_view.h"

#include <cmath>
#include <utility>

#include "platform/linux/drawing/cairo_surface.h"
#include "platform/linux/x11/screen_metrics.h"

namespace vellora {
namespace {

// Zero for what no bitmap can have, which making one then refuses.
std::int64_t pixelCount(double points, double scale) {
  const double pixels = std::round(points * scale);
  return pixels >= 1 && pixels <= 32767 ? static_cast<std::int64_t>(pixels) : 0;
}

}  // namespace

XView::XView(std::shared_ptr<XSession> session) : session_(std::move(session)) {}

void XView::setDrawFunction(std::function<void(Surface&)> draw) { draw_ = std::move(draw); }

void XView::setFrame(const Rect& frame) {
  if (frame == frame_) return;
  frame_ = frame;
  setNeedsDisplay();
}

Rect XView::bounds() const { return {0, 0, frame_.absoluteWidth(), frame_.absoluteHeight()}; }

void XView::setNeedsDisplay() {
  if (host_ != nullptr) host_->displaySoon();
}

std::optional<double> XView::windowScale() const {
  return host_ != nullptr ? host_->hostScale() : std::nullopt;
}

std::unique_ptr<Bitmap> XView::bitmapForCachingDisplay() {
  auto scale = windowScale();
  if (!scale) scale = session_->metrics().scale();
  const double pixelsPerPoint = scale.value_or(fallbackScale);
  return CairoBitmap::make(pixelCount(bounds().width, pixelsPerPoint),
                           pixelCount(bounds().height, pixelsPerPoint));
}

void XView::cacheDisplay(Bitmap& bitmap) {
  if (bounds().isEmpty()) return;
  CairoSurface surface(static_cast<CairoBitmap&>(bitmap).pixels(),
                       static_cast<double>(bitmap.pixelWidth()) / bounds().width);
  draw(surface);
}

void XView::draw(Surface& surface) {
  if (draw_) draw_(surface);
}

}  // namespace vellora
