#include "base/text.h"

#include <functional>

#include "base/utf8.h"
#include "platform/text_services.h"

namespace vellora {

bool textEquals(std::string_view a, std::string_view b) {
  if (a == b) return true;
  // Bytes tell two ASCII texts apart, but not an ASCII text from another: U+212A equals K.
  if (isAscii(a) && isAscii(b)) return false;
  return TextServices::canonicalForm(a) == TextServices::canonicalForm(b);
}

bool textBeginsWith(std::string_view text, std::string_view prefix) {
  if (prefix.empty()) return true;
  if (isAscii(text) && isAscii(prefix)) {
    if (!text.starts_with(prefix)) return false;
    // A line feed after a carriage return belongs to it.
    return !(prefix.back() == '\r' && text.substr(prefix.size()).starts_with('\n'));
  }
  return TextServices::beginsWith(text, prefix);
}

std::size_t textHash(std::string_view text) {
  if (isAscii(text)) return std::hash<std::string_view>{}(text);
  return std::hash<std::string>{}(TextServices::canonicalForm(text));
}

}  // namespace vellora
