#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/rect.h"

namespace vellora {

// A finished picture of one caption, immutable.
class CaptionImage {
 public:
  virtual ~CaptionImage() = default;
};

// Where captions are composited: a window's view or a bitmap. Coordinates are points, origin at the
// top left, y downward.
class Surface {
 public:
  virtual ~Surface() = default;

  // Draws the whole image into `destination`, source over, upright.
  virtual void drawImage(const CaptionImage& image, const Rect& destination) = 0;
};

// Pixels that can be looked at and saved.
class Bitmap {
 public:
  virtual ~Bitmap() = default;

  virtual std::int64_t pixelWidth() const = 0;
  virtual std::int64_t pixelHeight() const = 0;

  // Alpha from 0 to 1 of a pixel, row 0 at the top; nothing outside the bitmap.
  virtual std::optional<double> alpha(std::int64_t column, std::int64_t row) const = 0;

  // The bitmap as a PNG file (ISO/IEC 15948); nothing when encoding fails.
  virtual std::optional<std::vector<std::uint8_t>> png() const = 0;
};

struct Color {
  double red = 0;
  double green = 0;
  double blue = 0;
  double alpha = 1;
  bool operator==(const Color&) const = default;
};

// Everything that one caption's picture is made of. Points, origin at the picture's top left, y
// downward; the bitmap has pixelWidth × pixelHeight pixels, `scale` of them to a point.
struct CaptionDrawing {
  std::string text;
  Size size;
  std::int64_t pixelWidth = 0;
  std::int64_t pixelHeight = 0;
  double scale = 1;
  Rect plate;
  double cornerRadius = 0;
  Color plateColor;
  Rect textRect;        // wrapped at words, overflow ends with an ellipsis
  double fontSize = 0;  // system font, medium weight
  Color textColor;
};

// Measures and paints captions. Main thread.
class CaptionPainter {
 public:
  virtual ~CaptionPainter() = default;

  // All texts of the translation that captions come from now on: one alone may leave open which
  // language's letter forms it should have, and the others then tell. Whether a text may look
  // different from now on, so that pictures painted before are to be forgotten.
  virtual bool setTranslation(const std::vector<std::string_view>& texts) = 0;

  // Height in points of `text` in the system font of `fontSize` and medium weight, wrapped at words
  // to `width`; at most `maximumHeight`.
  virtual double measureHeight(std::string_view text, double fontSize, double width,
                               double maximumHeight) = 0;

  // The caption, sharp; null when it cannot be painted (no memory, for instance).
  virtual std::shared_ptr<const CaptionImage> paint(const CaptionDrawing& drawing) = 0;

  // A copy blurred by a Gaussian of standard deviation `radius` pixels, transparent outside,
  // cropped to the image's own bounds; null when that fails.
  virtual std::shared_ptr<const CaptionImage> blur(const CaptionImage& image, double radius) = 0;
};

}  // namespace vellora
