#include "base/percent_encoding.h"

#include <cstddef>

#include "base/utf8.h"

namespace vellora {

namespace {

bool isAlphanumericAscii(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

int hexValue(char c) {
  if (c <= '9') return c - '0';
  return (c | 0x20) - 'a' + 10;
}

}  // namespace

bool isUnreserved(char c) {
  return isAlphanumericAscii(c) || c == '-' || c == '.' || c == '_' || c == '~';
}

bool isSubDelimiter(char c) {
  static constexpr std::string_view delimiters = "!$&'()*+,;=";
  return delimiters.find(c) != std::string_view::npos;
}

bool isQueryCharacter(char c) {
  return isUnreserved(c) || isSubDelimiter(c) || c == ':' || c == '@' || c == '/' || c == '?';
}

bool isHexDigit(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

std::string percentEncodedForQuery(std::string_view text) {
  static constexpr std::string_view digits = "0123456789ABCDEF";
  std::string result;
  result.reserve(text.size());
  for (const char c : text) {
    if (isQueryCharacter(c)) {
      result += c;
    } else {
      const auto byte = static_cast<unsigned char>(c);
      ((result += '%') += digits[byte >> 4]) += digits[byte & 0xF];
    }
  }
  return result;
}

std::optional<std::string> percentDecoded(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%') {
      result += text[i];
      continue;
    }
    if (text.size() - i < 3 || !isHexDigit(text[i + 1]) || !isHexDigit(text[i + 2])) {
      return std::nullopt;
    }
    result += static_cast<char>(hexValue(text[i + 1]) * 16 + hexValue(text[i + 2]));
    i += 2;
  }
  if (!isWellFormed(result)) return std::nullopt;
  return result;
}

}  // namespace vellora
