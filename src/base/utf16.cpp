#include "base/utf16.h"

#include "base/utf8.h"

namespace vellora {

namespace {

constexpr char32_t firstBeyondOneUnit = 0x10000;
constexpr char32_t firstHighSurrogate = 0xD800;
constexpr char32_t firstLowSurrogate = 0xDC00;
constexpr char32_t lastLowSurrogate = 0xDFFF;

bool isSurrogate(char32_t unit) { return unit >= firstHighSurrogate && unit <= lastLowSurrogate; }
bool isLowSurrogate(char32_t unit) { return unit >= firstLowSurrogate && unit <= lastLowSurrogate; }

// The character that begins at `offset`, which is moved past it.
char32_t nextUtf16(std::u16string_view text, std::size_t& offset) {
  const char32_t unit = text[offset++];
  if (!isSurrogate(unit)) return unit;
  if (isLowSurrogate(unit) || offset == text.size() || !isLowSurrogate(text[offset])) {
    return replacementCharacter;
  }
  const char32_t low = text[offset++];
  return firstBeyondOneUnit + ((unit - firstHighSurrogate) << 10) + (low - firstLowSurrogate);
}

}  // namespace

std::u16string toUtf16(std::string_view text) {
  std::u16string result;
  result.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) {
    const char32_t character = nextCharacter(text, at);
    if (character < firstBeyondOneUnit) {
      result += static_cast<char16_t>(character);
    } else {
      const char32_t beyond = character - firstBeyondOneUnit;
      result += static_cast<char16_t>(firstHighSurrogate + (beyond >> 10));
      result += static_cast<char16_t>(firstLowSurrogate + (beyond & 0x3FF));
    }
  }
  return result;
}

std::string fromUtf16(std::u16string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t at = 0; at < text.size();) appendCharacter(result, nextUtf16(text, at));
  return result;
}

}  // namespace vellora
