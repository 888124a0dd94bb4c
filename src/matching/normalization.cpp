#include "matching/normalization.h"

#include "base/utf8.h"
#include "platform/text_services.h"

namespace vellora {

namespace {

bool isLetterOrDigit(char ascii) {
  return (ascii >= 'a' && ascii <= 'z') || (ascii >= '0' && ascii <= '9') ||
         (ascii >= 'A' && ascii <= 'Z');
}

bool isAsciiAt(std::string_view text, std::size_t at) {
  return static_cast<unsigned char>(text[at]) < 0x80;
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
  for (std::size_t at = 0; at < folded.size();) {
    if (isAsciiAt(folded, at)) {
      if (isLetterOrDigit(folded[at])) key.push_back(folded[at]);
      ++at;
      continue;
    }
    const std::size_t begin = at;
    if (TextServices::isAlphanumeric(nextCharacter(folded, at))) {
      key.append(folded, begin, at - begin);
    }
  }
  return key;
}

}  // namespace vellora
