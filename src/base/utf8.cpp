#include "base/utf8.h"

#include <array>
#include <cstdint>
#include <cstring>

namespace vellora {

namespace {

// What a lead byte announces: how many bytes follow it, and the bounds of the first of them, which
// rule out overlong forms, surrogates and numbers above U+10FFFF.
struct Lead {
  int trailing;
  unsigned char lowest;
  unsigned char highest;
};

Lead leadOf(unsigned char byte) {
  if (byte < 0xC2 || byte > 0xF4) return {0, 0, 0};
  if (byte < 0xE0) return {1, 0x80, 0xBF};
  if (byte < 0xF0) {
    const unsigned char lowest = byte == 0xE0 ? 0xA0 : 0x80;
    const unsigned char highest = byte == 0xED ? 0x9F : 0xBF;
    return {2, lowest, highest};
  }
  const unsigned char lowest = byte == 0xF0 ? 0x90 : 0x80;
  const unsigned char highest = byte == 0xF4 ? 0x8F : 0xBF;
  return {3, lowest, highest};
}

// As nextCharacter, but `wrong` is set where the replacement stands for what is not UTF-8.
char32_t decode(std::string_view text, std::size_t& offset, bool& wrong) {
  const auto first = static_cast<unsigned char>(text[offset++]);
  if (first < 0x80) return first;
  Lead lead = leadOf(first);
  if (lead.trailing == 0) {
    wrong = true;
    return replacementCharacter;
  }
  char32_t character = first & (0x3Fu >> lead.trailing);
  for (; lead.trailing > 0; --lead.trailing) {
    const auto byte = offset < text.size() ? static_cast<unsigned char>(text[offset])
                                           : static_cast<unsigned char>(0);
    if (byte < lead.lowest || byte > lead.highest) {
      wrong = true;
      return replacementCharacter;
    }
    ++offset;
    character = character << 6 | (byte & 0x3Fu);
    lead.lowest = 0x80;
    lead.highest = 0xBF;
  }
  return character;
}

}  // namespace

char32_t Utf8::decodeCharacter(std::string_view text, std::size_t& offset) {
  bool wrong = false;
  return decode(text, offset, wrong);
}

void appendCharacter(std::string& text, char32_t character) {
  std::array<char, 4> bytes;
  std::size_t count = 0;
  const auto byte = [&](char32_t value) { bytes[count++] = static_cast<char>(value); };
  if (character < 0x80) {
    text.push_back(static_cast<char>(character));
    return;
  }
  if (character < 0x800) {
    byte(0xC0 | character >> 6);
  } else {
    if (character < 0x10000) {
      byte(0xE0 | character >> 12);
    } else {
      byte(0xF0 | character >> 18);
      byte(0x80 | (character >> 12 & 0x3F));
    }
    byte(0x80 | (character >> 6 & 0x3F));
  }
  byte(0x80 | (character & 0x3F));
  text.append(bytes.data(), count);
}

bool isAscii(std::string_view text) {
  constexpr std::uint64_t highBits = 0x8080808080808080u;
  std::size_t at = 0;
  for (; at + sizeof(std::uint64_t) <= text.size(); at += sizeof(std::uint64_t)) {
    std::uint64_t eight = 0;
    std::memcpy(&eight, text.data() + at, sizeof eight);
    if ((eight & highBits) != 0) return false;
  }
  for (; at < text.size(); ++at) {
    if (static_cast<unsigned char>(text[at]) >= 0x80) return false;
  }
  return true;
}

bool isWellFormed(std::string_view text) {
  if (isAscii(text)) return true;
  bool wrong = false;
  for (std::size_t at = 0; at < text.size() && !wrong;) {
    if (Utf8::commonCharacter(text, at) == 0) decode(text, at, wrong);
  }
  return !wrong;
}

std::string wellFormed(std::string_view text) {
  if (isWellFormed(text)) return std::string(text);
  std::string result;
  for (std::size_t at = 0; at < text.size();) appendCharacter(result, nextCharacter(text, at));
  return result;
}

}  // namespace vellora
