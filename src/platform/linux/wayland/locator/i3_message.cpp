#include "platform/linux/wayland/locator/i3_message.h"

#include <algorithm>
#include <cstring>

namespace vellora {

namespace {

constexpr std::string_view magic = "i3-ipc";
constexpr std::size_t numberSize = sizeof(std::uint32_t);
constexpr std::size_t headSize = magic.size() + 2 * numberSize;

std::uint32_t numberAt(std::string_view bytes) {
  std::uint32_t number = 0;
  std::memcpy(&number, bytes.data(), numberSize);
  return number;
}

std::string bytesOf(std::uint32_t number) {
  std::string bytes(numberSize, '\0');
  std::memcpy(bytes.data(), &number, numberSize);
  return bytes;
}

}  // namespace

std::string encodeI3Message(std::uint32_t type, std::string_view payload) {
  std::string message(magic);
  message += bytesOf(static_cast<std::uint32_t>(payload.size()));
  message += bytesOf(type);
  message += payload;
  return message;
}

void I3MessageReader::take(std::string_view bytes) {
  if (isBroken_) return;
  bytes_.erase(0, begin_);
  begin_ = 0;
  bytes_ += bytes;
}

std::optional<I3Message> I3MessageReader::next() {
  if (isBroken_) return std::nullopt;
  const std::string_view rest = std::string_view(bytes_).substr(begin_);
  const std::size_t seen = std::min(rest.size(), magic.size());
  isBroken_ = rest.substr(0, seen) != magic.substr(0, seen);
  if (isBroken_ || rest.size() < headSize) return std::nullopt;
  const std::size_t length = numberAt(rest.substr(magic.size()));
  isBroken_ = length > longestPayload;
  if (isBroken_ || rest.size() - headSize < length) return std::nullopt;
  begin_ += headSize + length;
  return I3Message{.type = numberAt(rest.substr(magic.size() + numberSize)),
                   .payload = std::string(rest.substr(headSize, length))};
}

}  // namespace vellora
