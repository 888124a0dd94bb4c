#include <cmath>
#include <cstdlib>
#include <string>

#include <glib.h>

#include "fuzz/fuzz_input.h"
#include "fuzz/fuzz_targets.h"
#include "platform/linux/drawing/cairo_surface.h"
#include "platform/linux/drawing/pango_painter.h"
#include "render/caption_view.h"
#include "render/composition.h"
#include "support/fake_native_view.h"
#include "support/fake_workspace.h"

namespace vellora {

namespace {

// The colours of a pixel never exceed its alpha.
void requirePremultiplied(cairo_surface_t* pixels) {
  cairo_surface_flush(pixels);
  const unsigned char* const data = cairo_image_surface_get_data(pixels);
  const std::ptrdiff_t stride = cairo_image_surface_get_stride(pixels);
  for (int y = 0; y < cairo_image_surface_get_height(pixels); ++y) {
    const auto* row = reinterpret_cast<const std::uint32_t*>(data + y * stride);
    for (int x = 0; x < cairo_image_surface_get_width(pixels); ++x) {
      const std::uint32_t alpha = row[x] >> 24;
      require((row[x] >> 16 & 0xFF) <= alpha && (row[x] >> 8 & 0xFF) <= alpha &&
                  (row[x] & 0xFF) <= alpha,
              "premultiplied pixels");
    }
  }
}

double lengthUpTo(FuzzInput& input, double longest) {
  return longest * input.take<std::uint16_t>() / 65535;
}

// A size that captions may have. A few only: looking for the fonts of a new size takes longer than
// all else.
double captionFont(FuzzInput& input) {
  using Style = CompositionStyle;
  return Style::smallestFont +
         static_cast<double>(input.below(5)) / 4 * (Style::largestFont - Style::smallestFont);
}

// As the caption view has it painted.
void paintCaption(FuzzInput& input, PangoPainter& painter) {
  Log log;
  FakeNativeView view(log);
  FakeWorkspace workspace(log);
  view.scale = static_cast<double>(input.below(7)) / 2;
  CaptionView canvas(painter, view, workspace);
  Caption caption;
  caption.rect = {lengthUpTo(input, 20), lengthUpTo(input, 20), lengthUpTo(input, 120),
                  lengthUpTo(input, 60)};
  caption.font = captionFont(input);
  caption.softness = static_cast<double>(input.below(9)) / 8;
  caption.text = input.rest();
  const double width = caption.rect.width;
  const double height = painter.measureHeight(caption.text, caption.font, width, 1000);
  require(height >= 0 && height <= 1000, "a text's height");
  painter.setTranslation({caption.text});
  canvas.setCaptions({caption});
  const auto bitmap = CairoBitmap::make(64, 64);
  CairoSurface surface(bitmap->pixels(), *view.scale);
  canvas.draw(surface);
  requirePremultiplied(bitmap->pixels());
}

double anyNumber(FuzzInput& input) {
  return input.flag() ? input.number() : static_cast<double>(input.take<std::int16_t>()) / 16;
}
Rect anyRectangle(FuzzInput& input) { return rectangleOf(input, anyNumber); }

// As the seam allows it.
void paintAnything(FuzzInput& input, PangoPainter& painter) {
  CaptionDrawing drawing;
  drawing.pixelWidth = input.flag() ? input.take<std::int8_t>() : input.take<std::int64_t>();
  drawing.pixelHeight = input.flag() ? input.take<std::int8_t>() : input.take<std::int64_t>();
  // Of what could be painted, nothing that takes long.
  if (drawing.pixelWidth > 127 && drawing.pixelWidth < 32768) drawing.pixelWidth = 127;
  if (drawing.pixelHeight > 127 && drawing.pixelHeight < 32768) drawing.pixelHeight = 127;
  drawing.size = {anyNumber(input), anyNumber(input)};
  drawing.scale = static_cast<double>(input.below(9)) / 2;
  drawing.plate = anyRectangle(input);
  drawing.cornerRadius = anyNumber(input);
  drawing.plateColor = {anyNumber(input), anyNumber(input), anyNumber(input), anyNumber(input)};
  drawing.textRect = anyRectangle(input);
  drawing.fontSize = captionFont(input);
  if (input.flag()) drawing.fontSize = -input.number();
  if (drawing.fontSize > 0 && drawing.fontSize < 1) drawing.fontSize = 0;
  if (drawing.fontSize > 200) drawing.fontSize = 200;
  drawing.textColor = {0.8, 1, 0.9, anyNumber(input)};
  const double radius = anyNumber(input);
  drawing.text = input.rest();
  const auto picture = painter.paint(drawing);
  const bool paintable = drawing.pixelWidth > 0 && drawing.pixelHeight > 0 &&
                         drawing.pixelWidth < 32768 && drawing.pixelHeight < 32768;
  require(paintable || !picture, "no picture without pixels");
  if (!picture) return;
  requirePremultiplied(static_cast<const CairoImage&>(*picture).pixels());
  const auto blurred = painter.blur(*picture, radius);
  if (blurred) requirePremultiplied(static_cast<const CairoImage&>(*blurred).pixels());
  const auto bitmap = CairoBitmap::make(64, 64);
  CairoSurface surface(bitmap->pixels(), 1);
  surface.drawImage(blurred ? *blurred : *picture, anyRectangle(input));
}

}  // namespace

void fuzzCaptionPainting(std::string_view bytes) {
  static const bool ready = [] {
    setenv("FONTCONFIG_FILE", VELLORA_TEST_FONTS, 1);
    unsetenv("DISPLAY");
    unsetenv("WAYLAND_DISPLAY");
    g_log_set_always_fatal(G_LOG_LEVEL_CRITICAL);  // no misuse of a library
    return true;
  }();
  require(ready, "an environment");
  static PangoPainter painter;  // its fonts take longer to find than anything else here
  FuzzInput input(bytes);
  if (input.flag()) {
    paintCaption(input, painter);
  } else {
    paintAnything(input, painter);
  }
}

}  // namespace vellora
