#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/rect.h"
#include "platform/linux/drawing/handles.h"

namespace vellora {

// Sets captions' text with Pango: the system font in medium weight, wrapped at words, on lines at
// equal distances whatever fonts a line needs, in the letter forms of the text's own language, or
// of its translation's where the text leaves that open.
// Lengths are points; the same text breaks into the same lines at every scale. Needs no display.
// Main thread.
class TextSetter {
 public:
  // From one baseline to the next, in font sizes.
  static constexpr double lineHeight = 1.25;

  // Fontconfig's files are read from here on by a thread of Pango's own, which what measures or
  // shows a text first waits for.
  TextSetter();

  // The language of the translation that texts are of, as `commonLanguage` gives it; whether it is
  // another one than before.
  bool setCommonLanguage(const char* language);

  // Height of the whole text, `most` at most; not all of a text that is higher is laid out. 0 where
  // font size or width are not positive or not finite. A line is never set narrower than one and a
  // half font sizes.
  double height(std::string_view text, double fontSize, double width, double most);

  // Shows the text from the top of `place` in the context's source colour. Where it is higher than
  // `place`, the last line that fits takes all that is left, with a space for the line ends in it,
  // and ends with an ellipsis where that is too long. There is always one line; where a length is
  // not positive or not finite, there is nothing. The context's unit is the point.
  void show(cairo_t* context, std::string_view text, double fontSize, const Rect& place);

 private:
  void layOut(std::string_view text, double fontSize, double width, double lines);
  void showLine(cairo_t* context, PangoLayoutLine* line, double fontSize, double width,
                Point lineTop);
  void showRest(cairo_t* context, PangoLayoutLine* line, double fontSize, double width,
                Point lineTop);
  double baseline();

  PangoFontMapPtr fontMap_;
  PangoContextPtr context_;
  PangoFontPtr font_;
  PangoLayoutPtr layout_;
  PangoLayoutPtr lastLine_;
  const char* commonLanguage_ = "en";
  std::optional<double> baseline_;  // once it was asked for
};

}  // namespace vellora
