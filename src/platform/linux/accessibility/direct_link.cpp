#include "platform/linux/accessibility/direct_link.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string_view>

#include "platform/linux/socket/local_socket.h"

namespace vellora {

namespace {

// What stands for a byte in an address: itself, or '%' with two hexadecimal digits.
std::optional<std::string> unescaped(std::string_view value) {
  std::string result;
  for (std::size_t i = 0; i < value.size(); ++i) {
    if (value[i] != '%') {
      result += value[i];
      continue;
    }
    unsigned byte = 0;
    const std::string_view digits = value.substr(i + 1, 2);
    const auto parsed = std::from_chars(digits.data(), digits.data() + digits.size(), byte, 16);
    if (digits.size() < 2 || parsed.ptr != digits.data() + digits.size()) return std::nullopt;
    result += static_cast<char>(byte);
    i += 2;
  }
  return result;
}

// The socket's name as the kernel has it: a path, or after a zero byte an abstract name. Nothing
// for any other address, a list of several among them.
std::optional<std::string> socketName(std::string_view address) {
  constexpr std::string_view transport = "unix:";
  if (!address.starts_with(transport) || address.find(';') != std::string_view::npos) {
    return std::nullopt;
  }
  address.remove_prefix(transport.size());
  std::optional<std::string> name;
  while (!address.empty()) {
    const std::string_view entry = address.substr(0, address.find(','));
    address.remove_prefix(std::min(address.size(), entry.size() + 1));
    const std::string_view key = entry.substr(0, entry.find('='));
    if (key == "guid") continue;
    if (name || key.size() == entry.size() || (key != "path" && key != "abstract")) {
      return std::nullopt;
    }
    const auto value = unescaped(entry.substr(key.size() + 1));
    if (!value || value->empty() || value->find('\0') != std::string::npos) return std::nullopt;
    name = key == "path" ? *value : '\0' + *value;
  }
  return name;
}

}  // namespace

BusPtr openDirectLink(const std::string& address, std::int32_t processIdentifier) {
  const auto name = socketName(address);
  if (!name || processIdentifier <= 0) return nullptr;
  LocalSocket socket;
  if (!socket.connectTo(*name) || !socket.isOf(processIdentifier)) return nullptr;
  sd_bus* made = nullptr;
  if (sd_bus_new(&made) < 0) return nullptr;
  BusPtr link(made);
  // Nobody has to send us descriptors.
  if (sd_bus_set_bus_client(made, 0) < 0 || sd_bus_negotiate_fds(made, 0) < 0 ||
      sd_bus_set_fd(made, socket.fd(), socket.fd()) < 0) {
    return nullptr;
  }
  socket.release();  // it is closed with the link
  if (sd_bus_start(made) < 0) return nullptr;
  return link;
}

}  // namespace vellora
