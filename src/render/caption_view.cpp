#include "render/caption_view.h"

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

}  // namespace

CaptionView::CaptionView(CaptionPainter& painter, NativeView& nativeView, Workspace& workspace)
    : painter_(painter), nativeView_(nativeView), workspace_(workspace) {
  nativeView_.setDrawFunction([this](Surface& surface) { draw(surface); });
}

CaptionView::~CaptionView() { nativeView_.setDrawFunction({}); }

void CaptionView::setCaptions(std::vector<Caption> captions) {
  captions_ = std::move(captions);
  nativeView_.setNeedsDisplay();
}

void CaptionView::draw(Surface& surface) {
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
  if (const auto found = imageCache_.find(key); found != imageCache_.end()) return found->second;

  ImagePtr picture = renderImage(caption, scale);
  if (!picture) return nullptr;
  // Flushed as a whole: which pictures will be wanted again is not worth keeping account of.
  if (imageCache_.size() >= CaptionStyle::cacheLimit) imageCache_.clear();
  imageCache_.emplace(std::move(key), picture);
  return picture;
}

CaptionView::ImagePtr CaptionView::renderImage(const Caption& caption, double scale) {
  ImagePtr sharp = painter_.paint(drawingOf(caption, scale));
  if (!sharp || !(caption.softness > 0)) return sharp;
  ImagePtr blurred = painter_.blur(*sharp, scale * caption.softness * CaptionStyle::blurRadius);
  return blurred ? blurred : sharp;
}

}  // namespace vellora
