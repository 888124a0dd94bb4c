#include "companion/song/text.h"

#include <algorithm>

#include "base/utf8.h"
#include "matching/trimming.h"

namespace vellora::companion {
namespace {

bool isControl(char32_t c) {
  return c < 0x20 || (c >= 0x7F && c <= 0x9F) || c == 0x2028 || c == 0x2029;
}

}  // namespace

std::string cleaned(std::string_view text) {
  std::string result;
  result.reserve(text.size());
  bool pending = false;
  for (std::size_t offset = 0; offset < text.size();) {
    const char32_t character = nextCharacter(text, offset);
    if (isControl(character)) {
      pending = true;
      continue;
    }
    if (pending && !result.empty()) result.push_back(' ');
    pending = false;
    appendCharacter(result, character);
  }
  return std::string(OverlayMatching::trimmed(result));
}

std::string_view cut(std::string_view text, std::size_t longest) {
  if (text.size() <= longest) return text;
  std::size_t end = longest;
  while (end > 0 && (static_cast<unsigned char>(text[end]) & 0xC0U) == 0x80U) --end;
  return text.substr(0, end);
}

std::string inQuotes(std::string_view text) {
  constexpr std::size_t longest = 60;
  std::string result = "\"";
  result.append(cut(text, longest));
  if (text.size() > longest) result.append("…");
  return cleaned(result.append("\""));
}

std::string withoutMarks(std::string_view text, std::string_view openings,
                         const std::function<std::size_t(std::string_view)>& lengthOf) {
  std::string result;
  while (!text.empty()) {
    const std::size_t next = text.find_first_of(openings);
    result.append(text.substr(0, next));
    if (next == std::string_view::npos) break;
    text.remove_prefix(next);
    const std::size_t length = lengthOf(text);
    if (length == 0) result.push_back(text.front());
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return result;
}

std::string counted(std::size_t count, const char* what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

void forEachLine(std::string_view text, const std::function<bool(int, std::string_view)>& take) {
  for (int number = 1; !text.empty(); ++number) {
    const std::size_t end = text.find_first_of("\r\n");
    if (!take(number, text.substr(0, end))) return;
    if (end == std::string_view::npos) return;
    const bool pair = text[end] == '\r' && end + 1 < text.size() && text[end + 1] == '\n';
    text.remove_prefix(end + (pair ? 2 : 1));
  }
}

std::string lowerCase(std::string_view text) {
  std::string result(text);
  for (char& c : result) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return result;
}

}  // namespace vellora::companion
