#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "platform/caption_painter.h"
#include "platform/native_view.h"
#include "platform/workspace.h"
#include "render/caption.h"
#include "render/image_key.h"

namespace vellora {

// Every measure and colour of a caption's picture. Lengths are points.
struct CaptionStyle {
  static constexpr double margin = 10;  // around the plate, room for the blur to spread
  static constexpr double cornerRadius = 7;
  static constexpr double plateWhite = 0.32;
  static constexpr double plateAlpha = 0.26;
  static constexpr double plateAlphaLoss = 0.12;  // at softness 1
  static constexpr Color textColor{0.82, 1.0, 0.92, 1.0};
  static constexpr double textAlphaLoss = 0.4;  // at softness 1
  static constexpr double textInsetX = 9;
  static constexpr double textInsetY = 4;
  static constexpr double blurRadius = 2.6;  // at softness 1
  static constexpr double fallbackScale = 2;
  static constexpr std::size_t cacheLimit = 96;
};

// The one view in the overlay panel: draws every caption as a translucent plate with its text, the
// softer the blurrier, from pictures that are painted once and kept. Coordinates are points, origin
// at the top left, y downward. Main thread. What it is made from must outlive it.
class CaptionView {
 public:
  CaptionView(CaptionPainter& painter, NativeView& nativeView, Workspace& workspace);
  ~CaptionView();
  CaptionView(const CaptionView&) = delete;
  CaptionView& operator=(const CaptionView&) = delete;

  // The captions to draw, later ones over earlier ones. Setting them always asks for a drawing,
  // even when nothing changed.
  const std::vector<Caption>& captions() const { return captions_; }
  void setCaptions(std::vector<Caption> captions);

  // Draws all captions; a caption whose picture cannot be painted is left out and tried again the
  // next time. A picture size that is no number of pixels ends the process (see wholePixels).
  void draw(Surface& surface);

  // The platform's view, and its operations passed on.
  NativeView& nativeView() { return nativeView_; }
  void setFrame(const Rect& frame) { nativeView_.setFrame(frame); }
  Rect bounds() const { return nativeView_.bounds(); }
  void setNeedsDisplay() { nativeView_.setNeedsDisplay(); }

  // Paints every picture anew when it is next drawn.
  void forgetImages() { imageCache_.clear(); }
  // Pictures kept at the moment.
  std::size_t cachedImageCount() const { return imageCache_.size(); }

 private:
  using ImagePtr = std::shared_ptr<const CaptionImage>;

  double scale() const;
  ImagePtr image(const Caption& caption, double scale);
  ImagePtr renderImage(const Caption& caption, double scale);

  CaptionPainter& painter_;
  NativeView& nativeView_;
  Workspace& workspace_;
  std::vector<Caption> captions_;
  std::unordered_map<ImageKey, ImagePtr, ImageKeyHash> imageCache_;
};

}  // namespace vellora
