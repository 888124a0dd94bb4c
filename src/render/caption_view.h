#pragma once

#include <cstddef>
#include <cstdint>
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
  static constexpr std::size_t cacheLimit = 96;               // pictures
  static constexpr std::size_t cacheBytes = 4 * 1024 * 1024;  // of their pixels
};

// The one view in the overlay panel: draws every caption as a translucent plate with its text, the
// softer the blurrier, from pictures that are painted once and kept. Coordinates are points, origin
// at the top left, y downward. Main thread. What it is made from must outlive it.
class CaptionView {
 public:
  // Beyond `cacheBytes` of pixels, pictures that neither this drawing nor the last one shows are
  // forgotten, those first that were shown longest ago.
  CaptionView(CaptionPainter& painter, NativeView& nativeView, Workspace& workspace,
              std::size_t cacheBytes = CaptionStyle::cacheBytes);
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
  void forgetImages();
  // Pictures kept at the moment.
  std::size_t cachedImageCount() const { return imageCache_.size(); }
  // And the bytes of their pixels.
  std::size_t cachedBytes() const { return cachedBytes_; }

 private:
  using ImagePtr = std::shared_ptr<const CaptionImage>;
  struct Kept {
    ImagePtr picture;
    std::size_t bytes;
    std::uint64_t drawing;  // the last one that showed it
  };

  double scale() const;
  ImagePtr image(const Caption& caption, double scale);
  ImagePtr renderImage(const CaptionDrawing& drawing, double softness);
  void makeRoom(std::size_t bytes);

  CaptionPainter& painter_;
  NativeView& nativeView_;
  Workspace& workspace_;
  std::vector<Caption> captions_;
  std::unordered_map<ImageKey, Kept, ImageKeyHash> imageCache_;
  std::size_t cacheBytes_;
  std::size_t cachedBytes_ = 0;
  std::uint64_t drawing_ = 0;  // how many there were
};

}  // namespace vellora
