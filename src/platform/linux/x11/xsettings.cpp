#include "platform/linux/x11/xsettings.h"

#include <cstddef>

namespace vellora {
namespace {

// Reads forward through the bytes; past the end everything is zero and `ok` turns false for good.
class Reader {
 public:
  Reader(std::string_view bytes, bool bigEndian) : bytes_(bytes), bigEndian_(bigEndian) {}

  bool ok() const { return ok_; }

  std::string_view take(std::size_t count) {
    if (count > bytes_.size() - at_) {
      ok_ = false;
      at_ = bytes_.size();
      return {};
    }
    const std::string_view part = bytes_.substr(at_, count);
    at_ += count;
    return part;
  }

  // Texts are followed by zero to three bytes that fill up to a multiple of four.
  std::string_view takePadded(std::size_t count) {
    const std::string_view part = take(count);
    take((4 - count % 4) % 4);
    return part;
  }

  std::uint32_t takeNumber(std::size_t width) {
    const std::string_view part = take(width);
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < part.size(); ++i) {
      const std::size_t place = bigEndian_ ? i : part.size() - 1 - i;
      value = value << 8 | static_cast<unsigned char>(part[place]);
    }
    return value;
  }

 private:
  std::string_view bytes_;
  bool bigEndian_;
  std::size_t at_ = 0;
  bool ok_ = true;
};

constexpr std::uint32_t integerType = 0;
constexpr std::uint32_t stringType = 1;
constexpr std::uint32_t colorType = 2;

}  // namespace

std::optional<std::int32_t> integerSetting(std::string_view property, std::string_view name) {
  if (property.empty()) return std::nullopt;
  Reader reader(property, property.front() == 1);
  reader.take(4);        // byte order and padding
  reader.takeNumber(4);  // serial of the whole
  const std::uint32_t count = reader.takeNumber(4);
  for (std::uint32_t i = 0; i < count && reader.ok(); ++i) {
    const std::uint32_t type = reader.takeNumber(1);
    reader.take(1);
    const std::size_t nameLength = reader.takeNumber(2);
    const std::string_view settingName = reader.takePadded(nameLength);
    reader.takeNumber(4);  // serial of its last change
    if (type == integerType) {
      const auto value = static_cast<std::int32_t>(reader.takeNumber(4));
      if (reader.ok() && settingName == name) return value;
    } else if (type == stringType) {
      reader.takePadded(reader.takeNumber(4));
    } else if (type == colorType) {
      reader.take(8);
    } else {
      return std::nullopt;  // of unknown length, so the rest cannot be read
    }
  }
  return std::nullopt;
}

}  // namespace vellora
