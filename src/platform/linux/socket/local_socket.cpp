#include "platform/linux/socket/local_socket.h"

#include <cerrno>
#include <cstddef>
#include <cstring>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace vellora {

LocalSocket::LocalSocket()
    : fd_(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0)) {}

LocalSocket::~LocalSocket() {
  if (fd_ >= 0) ::close(fd_);
}

bool LocalSocket::connectTo(const std::string& name) const {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (name.empty() || name.size() >= sizeof(address.sun_path)) {
    errno = ENAMETOOLONG;
    return false;
  }
  std::memcpy(address.sun_path, name.data(), name.size());
  // An abstract name has no end but the address's.
  const auto size = offsetof(sockaddr_un, sun_path) + name.size() + (name.front() != '\0' ? 1 : 0);
  return ::connect(fd_, reinterpret_cast<const sockaddr*>(&address),
                   static_cast<socklen_t>(size)) == 0;
}

bool LocalSocket::isOf(std::int32_t processIdentifier) const {
  ucred listener{};
  socklen_t size = sizeof(listener);
  return ::getsockopt(fd_, SOL_SOCKET, SO_PEERCRED, &listener, &size) == 0 &&
         listener.pid == processIdentifier;
}

int connectToLocalSocket(const std::string& path) {
  LocalSocket socket;
  return socket.connectTo(path) ? socket.release() : -1;
}

}  // namespace vellora
