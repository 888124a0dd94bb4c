#pragma once

#include <cstdint>
#include <string>

#include "platform/caption_painter.h"

namespace vellora {

// A caption with a plate of that size, ten points from each side, at `scale`.
inline CaptionDrawing captionDrawing(const std::string& text, double width, double height,
                                     double fontSize, double scale = 1) {
  CaptionDrawing drawing;
  drawing.text = text;
  drawing.size = {width + 20, height + 20};
  drawing.pixelWidth = static_cast<std::int64_t>(drawing.size.width * scale);
  drawing.pixelHeight = static_cast<std::int64_t>(drawing.size.height * scale);
  drawing.scale = scale;
  drawing.plate = {10, 10, width, height};
  drawing.cornerRadius = 7;
  drawing.plateColor = {0.32, 0.32, 0.32, 0.26};
  drawing.textRect = {19, 14, width - 18, height - 8};
  drawing.fontSize = fontSize;
  drawing.textColor = {0.82, 1.0, 0.92, 1.0};
  return drawing;
}

}  // namespace vellora
