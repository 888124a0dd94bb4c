#include "platform/linux/accessibility/direct_link.h"

#include <charconv>
#include <cstddef>
#include <cstring>
#include <optional>
#include <string_view>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

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

class Socket {
 public:
  Socket() : number_(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {}
  ~Socket() {
    if (number_ >= 0) close(number_);
  }
  Socket(const Socket&) = delete;
  Socket& operator=(const Socket&) = delete;

  bool connectTo(const std::string& name) const {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (number_ < 0 || name.size() >= sizeof(address.sun_path)) return false;
    std::memcpy(address.sun_path, name.data(), name.size());
    // An abstract name has no end but the address's.
    const auto size =
        offsetof(sockaddr_un, sun_path) + name.size() + (name.front() != '\0' ? 1 : 0);
    return connect(number_, reinterpret_cast<const sockaddr*>(&address),
                   static_cast<socklen_t>(size)) == 0;
  }

  // The process that listens there.
  bool isOf(std::int32_t processIdentifier) const {
    ucred listener{};
    socklen_t size = sizeof(listener);
    return getsockopt(number_, SOL_SOCKET, SO_PEERCRED, &listener, &size) == 0 &&
           listener.pid == processIdentifier;
  }

  // Has the bus use it, and close it in the end.
  bool giveTo(sd_bus* bus) {
    if (sd_bus_set_fd(bus, number_, number_) < 0) return false;
    number_ = -1;
    return true;
  }

 private:
  int number_;
};

}  // namespace

BusPtr openDirectLink(const std::string& address, std::int32_t processIdentifier) {
  const auto name = socketName(address);
  if (!name || processIdentifier <= 0) return nullptr;
  Socket socket;
  if (!socket.connectTo(*name) || !socket.isOf(processIdentifier)) return nullptr;
  sd_bus* made = nullptr;
  if (sd_bus_new(&made) < 0) return nullptr;
  BusPtr link(made);
  // Nobody has to send us descriptors.
  if (sd_bus_set_bus_client(made, 0) < 0 || sd_bus_negotiate_fds(made, 0) < 0 ||
      !socket.giveTo(made) || sd_bus_start(made) < 0) {
    return nullptr;
  }
  return link;
}

}  // namespace vellora
