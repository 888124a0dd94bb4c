#include "companion/view/text_width.h"

#include <unicode/uchar.h>

#include "base/utf8.h"

namespace vellora::companion {
namespace {

int widthOf(char32_t character) {
  const auto code = static_cast<UChar32>(character);
  switch (u_charType(code)) {
    case U_NON_SPACING_MARK:
    case U_ENCLOSING_MARK:
    case U_FORMAT_CHAR:
    case U_CONTROL_CHAR:
      return 0;
    default:
      break;
  }
  const int width = u_getIntPropertyValue(code, UCHAR_EAST_ASIAN_WIDTH);
  return width == U_EA_WIDE || width == U_EA_FULLWIDTH ? 2 : 1;
}

}  // namespace

int textWidth(std::string_view text) {
  int width = 0;
  for (std::size_t offset = 0; offset < text.size();) width += widthOf(nextCharacter(text, offset));
  return width;
}

std::string fitted(std::string_view text, int columns) {
  if (columns <= 0) return {};
  int width = 0;
  std::size_t end = 0;  // of what fits with "…" after it
  for (std::size_t offset = 0; offset < text.size();) {
    width += widthOf(nextCharacter(text, offset));
    if (width > columns) return std::string(text.substr(0, end)).append("…");
    if (width < columns) end = offset;
  }
  return std::string(text);
}

}  // namespace vellora::companion
