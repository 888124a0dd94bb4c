#include "render/caption_view.h"

#include <algorithm>
#include <utility>

#include "render/pixels.h"

namespace vellora {

namespace {

// The caption's picture, described for the painter: the plate stands in its margin.
CaptionDrawing drawingOf(const Caption& caption, double scale) {
  using Style = CaptionStyle;
  const double plateWidth = caption.rect.absoluteWidth();
  const double plateHeight = caption.rect.absoluteHeight();
  CaptionDrawing drawing;
  drawing.text = caption.text;
  drawing.size = {plateWidth + 2 * Style::margin, plateHeight + 2 * Style::margin};
  drawing.pixelWidth = wholePixels(scale * drawing.size.width);
  drawing.pixelHeight = wholePixels(scale * drawing.size.height);
  drawing.scale = scale;
  drawing.plate = {Style::margin, Style::margin, plateWidth, plateHeight};
  drawing.cornerRadius = Style::cornerRadius;
  drawing.plateColor = {Style::plateWhite, Style::plateWhite, Style::plateWhite,
                        Style::plateAlpha - Style::plateAlphaLoss * caption.softness};
  drawing.textRect = {Style::margin + Style::textInsetX, Style::margin + Style::textInsetY,
                      plateWidth - 2 * Style::textInsetX, plateHeight - 2 * Style::textInsetY};
  drawing.fontSize = caption.font;
  drawing.textColor = Style::textColor;
  drawing.textColor.alpha -= Style::textAlphaLoss * caption.softness;
  return drawing;
}

std::size_t bytesOf(const CaptionDrawing& drawing) {
  constexpr std::size_t bytesOfAPixel = 4;
  return static_cast<std::size_t>(drawing.pixelWidth) *
         static_cast<std::size_t>(drawing.pixelHeight) * bytesOfAPixel;
}

}  // namespace

CaptionView::CaptionView(CaptionPainter& painter, NativeView& nativeView, Workspace& workspace,
                         std::size_t cacheBytes)
    : painter_(painter), nativeView_(nativeView), workspace_(workspace), cacheBytes_(cacheBytes) {
  nativeView_.setDrawFunction([this](Surface& surface) { draw(surface); });
}

CaptionView::~CaptionView() { nativeView_.setDrawFunction({}); }

void CaptionView::setCaptions(std::vector<Caption> captions) {
  captions_ = std::move(captions);
  nativeView_.setNeedsDisplay();
}

void CaptionView::draw(Surface& surface) {
  ++drawing_;
  const double currentScale = scale();
  for (const Caption& caption : captions_) {
    const ImagePtr picture = image(caption, currentScale);
    if (!picture) continue;
    surface.drawImage(*picture, caption.rect.insetBy(-CaptionStyle::margin, -CaptionStyle::margin));
  }
}

double CaptionView::scale() const {
  if (const std::optional<double> own = nativeView_.windowScale()) return *own;
  return workspace_.mainScreenScale().value_or(CaptionStyle::fallbackScale);
}

CaptionView::ImagePtr CaptionView::image(const Caption& caption, double scale) {
  ImageKey key{caption.text,
               caption.rect.absoluteWidth(),
               caption.rect.absoluteHeight(),
               caption.font,
               caption.softness,
               scale};
  if (const auto found = imageCache_.find(key); found != imageCache_.end()) {
    found->second.drawing = drawing_;
    return found->second.picture;
  }

  const CaptionDrawing drawing = drawingOf(caption, scale);
  ImagePtr picture = renderImage(drawing, caption.softness);
  if (!picture) return nullptr;
  if (imageCache_.size() >= CaptionStyle::cacheLimit) forgetImages();
  const std::size_t bytes = bytesOf(drawing);
  makeRoom(bytes);
  imageCache_.emplace(std::move(key), Kept{picture, bytes, drawing_});
  cachedBytes_ += bytes;
  return picture;
}

CaptionView::ImagePtr CaptionView::renderImage(const CaptionDrawing& drawing, double softness) {
  ImagePtr sharp = painter_.paint(drawing);
  if (!sharp || !(softness > 0)) return sharp;
  ImagePtr blurred = painter_.blur(*sharp, drawing.scale * softness * CaptionStyle::blurRadius);
  return blurred ? blurred : sharp;
}

void CaptionView::forgetImages() {
  imageCache_.clear();
  cachedBytes_ = 0;
}

// What the last drawing showed is most likely shown by this one, too: forgetting it would paint it
// anew each time where all that is shown has more bytes than may be kept.
void CaptionView::makeRoom(std::size_t bytes) {
  while (cachedBytes_ + bytes > cacheBytes_) {
    const auto oldest = std::ranges::min_element(
        imageCache_, {}, [](const auto& entry) { return entry.second.drawing; });
    if (oldest == imageCache_.end() || oldest->second.drawing + 1 >= drawing_) return;
    cachedBytes_ -= oldest->second.bytes;
    imageCache_.erase(oldest);
  }
}

}  // namespace vellora
