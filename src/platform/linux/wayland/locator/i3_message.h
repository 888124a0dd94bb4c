#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vellora {

// The i3 IPC protocol's messages: the magic "i3-ipc", the payload's length and the message's type
// as 32 bits each in the machine's own order, and the payload, which is JSON. Source: i3's and
// sway's documents of their IPC (sway-ipc(7)).
struct I3Message {
  static constexpr std::uint32_t subscribe = 2;
  static constexpr std::uint32_t getTree = 4;

  std::uint32_t type = 0;
  std::string payload;

  // An event, and no answer.
  bool isEvent() const { return (type >> 31U) != 0; }
};

std::string encodeI3Message(std::uint32_t type, std::string_view payload = {});

// Takes a peer's bytes as they come, and gives the messages in them. Any thread.
class I3MessageReader {
 public:
  // A payload longer than this is no tree of windows that anybody has.
  static constexpr std::size_t longestPayload = std::size_t{4} * 1024 * 1024;

  void take(std::string_view bytes);

  // The next message that is complete; nothing when more bytes are needed, or none will help.
  std::optional<I3Message> next();
  // The peer does not speak the protocol, or speaks of a payload that is too long. Stays so.
  bool isBroken() const { return isBroken_; }

 private:
  std::string bytes_;
  std::size_t begin_ = 0;  // of what has not been given
  bool isBroken_ = false;
};

}  // namespace vellora
