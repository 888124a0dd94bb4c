#include "companion/lyrics/id3_bounds.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

#include "base/files.h"

namespace vellora::companion {
namespace {

constexpr long largestText = 2L * 1024 * 1024;
constexpr int mostFrames = 2000;
constexpr int mostBlocks = 10'000;
constexpr long tagHeader = 10;

// As many bytes as are there, at most `count`.
std::string at(std::istream& bytes, long offset, std::size_t count) {
  std::string result(count, '\0');
  bytes.clear();
  bytes.seekg(offset);
  bytes.read(result.data(), static_cast<std::streamsize>(count));
  result.resize(static_cast<std::size_t>(std::max<std::streamsize>(bytes.gcount(), 0)));
  return result;
}

// A number of so many bits a byte, the highest byte first.
long number(std::string_view bytes, int bits) {
  long value = 0;
  for (const char byte : bytes) {
    value = (value << bits) | (static_cast<unsigned char>(byte) & ((1 << bits) - 1));
  }
  return value;
}

bool isId(std::string_view text) {
  return text.size() == 4 && std::ranges::all_of(text, [](char c) {
           return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
         });
}

// The size of the frame at `offset`; ID3v2.4 has seven bits a byte, but for programs that wrote
// eight, which TagLib recognises by the frame that follows.
long frameSize(std::istream& bytes, long offset, const std::string& header, int version) {
  if (version == 2) return number(header.substr(3), 8);
  const std::string size = header.substr(4, 4);
  const long eight = number(size, 8);
  if (version == 3) return eight;
  if (std::ranges::any_of(size, [](char c) { return (c & 0x80) != 0; })) return eight;
  const long seven = number(size, 7);
  if (seven <= 127 || isId(at(bytes, offset + tagHeader + seven, 4))) return seven;
  return isId(at(bytes, offset + tagHeader + eight, 4)) ? eight : seven;
}

}  // namespace

std::optional<long> id3End(std::istream& bytes) {
  const std::string header = at(bytes, 0, tagHeader);
  if (header.size() < tagHeader || !header.starts_with("ID3")) return 0;
  const int version = header[3];
  // Unsynchronised as a whole, or with an extended header, whose end TagLib has elsewhere.
  const bool unsure = (header[5] & 0xC0) != 0;
  const long end = tagHeader + number(header.substr(6), 7);
  if (end > static_cast<long>(largestReadableFile)) return std::nullopt;
  if (unsure) return end > largestText ? std::nullopt : std::optional(end);
  const std::size_t frameHeader = version == 2 ? 6 : 10;
  long offset = tagHeader;
  for (int frames = 0; offset < end; ++frames) {
    if (frames == mostFrames) return std::nullopt;
    const std::string frame = at(bytes, offset, frameHeader);
    if (frame.size() < frameHeader || frame[0] == '\0') break;
    offset += static_cast<long>(frameHeader) + frameSize(bytes, offset, frame, version);
  }
  return end;
}

bool flacCommentsAreSmall(std::istream& bytes) {
  constexpr int comments = 4;
  long offset = 4;
  for (int block = 0; block < mostBlocks; ++block) {
    const std::string header = at(bytes, offset, 4);
    if (header.size() < 4) return true;
    const long size = number(header.substr(1), 8);
    if ((header[0] & 0x7F) == comments && size > largestText) return false;
    if ((header[0] & 0x80) != 0) return true;
    offset += 4 + size;
  }
  return false;
}

}  // namespace vellora::companion
