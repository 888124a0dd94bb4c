#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace vellora {

// A D-Bus message as it goes over the wire (D-Bus Specification 0.43, "Message Protocol"), little
// endian: a signal with any signature and any body, whether they belong together or not.
class RawMessage {
 public:
  static std::string signal(std::string_view signature, std::string_view body) {
    RawMessage message;
    message.bytes_ = {'l', 4, 1, 1};
    message.number(static_cast<std::uint32_t>(body.size()));
    message.number(1);  // serial
    const std::size_t lengthAt = message.bytes_.size();
    message.number(0);  // of the fields, filled in below
    const std::size_t begin = message.bytes_.size();
    message.field(1, 'o', "/a");
    message.field(2, 's', "a.b");
    message.field(3, 's', "C");
    message.field(7, 's', ":1.1");
    if (!signature.empty()) message.signatureField(signature);
    const std::size_t length = message.bytes_.size() - begin;
    for (std::size_t i = 0; i < 4; ++i) {
      message.bytes_[lengthAt + i] = static_cast<char>(length >> (8 * i));
    }
    message.pad(8);
    return message.bytes_.append(body);
  }

 private:
  void pad(std::size_t unit) { bytes_.resize((bytes_.size() + unit - 1) / unit * unit); }
  void number(std::uint32_t value) {
    pad(4);
    for (int shift = 0; shift < 32; shift += 8) bytes_ += static_cast<char>(value >> shift);
  }
  void field(char code, char type, std::string_view text) {
    pad(8);
    bytes_ += code;
    bytes_.append({1, type, '\0'});
    number(static_cast<std::uint32_t>(text.size()));
    bytes_.append(text) += '\0';
  }
  void signatureField(std::string_view signature) {
    pad(8);
    bytes_.append({8, 1, 'g', '\0'});
    bytes_ += static_cast<char>(signature.size());
    bytes_.append(signature) += '\0';
  }

  std::string bytes_;
};

}  // namespace vellora
