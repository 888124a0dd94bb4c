#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/caption_painter.h"
#include "platform/linux/drawing/text_setter.h"

namespace vellora {

// Paints captions with Pango and Cairo in memory: no display is needed. The pictures are
// CairoImages. Main thread.
class PangoPainter final : public CaptionPainter {
 public:
  bool setTranslation(const std::vector<std::string_view>& texts) override;

  double measureHeight(std::string_view text, double fontSize, double width,
                       double maximumHeight) override;

  // Null for a picture without pixels or too large for Cairo. Where font or text rectangle have no
  // positive size, the plate stays without text.
  std::shared_ptr<const CaptionImage> paint(const CaptionDrawing& drawing) override;

  // `image` must be a CairoImage.
  std::shared_ptr<const CaptionImage> blur(const CaptionImage& image, double radius) override;

 private:
  void showText(cairo_t* context, const CaptionDrawing& drawing);

  TextSetter textSetter_;
  // Heights measured lately: the same rows are measured again at every reading.
  std::unordered_map<std::string, double> heights_;
};

}  // namespace vellora
