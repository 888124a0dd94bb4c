#include "platform/linux/x11/display_probe.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include "platform/linux/x11/xcb_types.h"

namespace vellora {
namespace {

using Clock = std::chrono::steady_clock;

class Socket {
 public:
  explicit Socket(int family)
      : fd_(::socket(family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {}
  ~Socket() {
    if (fd_ >= 0) ::close(fd_);
  }
  Socket(const Socket&) = delete;
  Socket& operator=(const Socket&) = delete;

  int fd() const { return fd_; }

 private:
  int fd_;
};

struct AddressListFree {
  void operator()(addrinfo* list) const { freeaddrinfo(list); }
};

bool waitFor(int fd, short events, Clock::time_point deadline) {
  while (true) {
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
    pollfd entry{fd, events, 0};
    const int ready = ::poll(&entry, 1, static_cast<int>(std::max<long long>(0, left.count())));
    if (ready > 0) return true;
    if (ready == 0 || errno != EINTR) return false;
  }
}

bool answersAt(const sockaddr* address, socklen_t length, Clock::time_point deadline) {
  const Socket socket(address->sa_family);
  if (socket.fd() < 0) return false;
  if (::connect(socket.fd(), address, length) != 0) {
    if (errno != EINPROGRESS || !waitFor(socket.fd(), POLLOUT, deadline)) return false;
  }
  // Byte order, padding, protocol 11.0, neither name nor data of an authorization.
  const bool little = std::endian::native == std::endian::little;
  std::array<unsigned char, 12> hello{};
  hello[0] = little ? 'l' : 'B';
  hello[little ? 2 : 3] = 11;
  if (::send(socket.fd(), hello.data(), hello.size(), MSG_NOSIGNAL) !=
      static_cast<ssize_t>(hello.size())) {
    return false;
  }
  if (!waitFor(socket.fd(), POLLIN, deadline)) return false;
  unsigned char first = 0;
  return ::recv(socket.fd(), &first, 1, 0) == 1;
}

bool answersLocally(int display, Clock::time_point deadline) {
  const std::string path = "/tmp/.X11-unix/X" + std::to_string(display);
  // The abstract name, which begins with a zero byte, is tried first, as libxcb does.
  for (const std::size_t leading : {std::size_t{1}, std::size_t{0}}) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    path.copy(address.sun_path + leading, sizeof address.sun_path - leading - 1);
    const auto length = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + leading +
                                               path.size() + (leading == 0 ? 1 : 0));
    if (answersAt(reinterpret_cast<const sockaddr*>(&address), length, deadline)) return true;
    if (Clock::now() >= deadline) return false;
  }
  return false;
}

bool answersRemotely(const char* host, int display, Clock::time_point deadline) {
  addrinfo hints{};
  hints.ai_socktype = SOCK_STREAM;
  addrinfo* found = nullptr;
  if (getaddrinfo(host, std::to_string(6000 + display).c_str(), &hints, &found) != 0) return false;
  const std::unique_ptr<addrinfo, AddressListFree> list(found);
  for (const addrinfo* entry = list.get(); entry != nullptr; entry = entry->ai_next) {
    if (answersAt(entry->ai_addr, entry->ai_addrlen, deadline)) return true;
  }
  return false;
}

}  // namespace

bool displayAnswers(const char* displayName, std::chrono::milliseconds patience) {
  char* hostText = nullptr;
  int display = 0;
  int screen = 0;
  if (xcb_parse_display(displayName, &hostText, &display, &screen) == 0) return false;
  const std::unique_ptr<char, XcbFree> host(hostText);
  const Clock::time_point deadline = Clock::now() + patience;
  const std::string_view name = host.get();
  if (name.empty() || name == "unix") return answersLocally(display, deadline);
  return answersRemotely(host.get(), display, deadline);
}

}  // namespace vellora
