#include "matching/normalization.h"

#include "base/utf8.h"
#include "platform/text_services.h"

namespace vellora {

namespace {

bool isLetterOrDigit(char ascii) {
  return (ascii >= 'a' && ascii <= 'z') || (ascii >= '0' && ascii <= '9') ||
         (ascii >= 'A' && ascii <= 'Z');
}

// Ideographs, syllables of Hangul and of kana that were letters from Unicode's first versions on:
// most characters of the texts that have any.
bool isOldLetter(char32_t character) {
  return (character >= 0x4E00 && character <= 0x9FA5) ||
         (character >= 0xAC00 && character <= 0xD7A3) ||
         (character >= 0x3041 && character <= 0x3094) ||
         (character >= 0x30A1 && character <= 0x30FA);
}

bool isKept(char32_t character) {
  if (character < 0x80) return isLetterOrDigit(static_cast<char>(character));
  return isOldLetter(character) || TextServices::isAlphanumeric(character);
}

// Nothing of ASCII is Chinese, marked or wide.
std::string normalizedAscii(std::string_view text) {
  std::string key;
  key.reserve(text.size());
  for (const char c : text) {
    if (!isLetterOrDigit(c)) continue;
    key.push_back(c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c);
  }
  return key;
}

}  // namespace

std::string OverlayMatching::normalized(std::string_view text) {
  if (isAscii(text)) return normalizedAscii(text);
  const std::optional<std::string> simplified = TextServices::simplified(text);
  const std::string folded =
      TextServices::folded(simplified ? std::string_view(*simplified) : text);
  std::string key;
  key.reserve(folded.size());
  std::size_t kept = 0;  // where what is kept, and not yet in the key, begins
  for (std::size_t at = 0; at < folded.size();) {
    const std::size_t begin = at;
    if (isKept(nextCharacter(folded, at))) continue;
    key.append(folded, kept, begin - kept);
    kept = at;
  }
  key.append(folded, kept);
  return key;
}

}  // namespace vellora
