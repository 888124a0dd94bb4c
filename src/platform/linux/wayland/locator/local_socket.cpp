#include "platform/linux/wayland/locator/local_socket.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace vellora {

int connectToLocalSocket(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.empty() || path.size() >= sizeof(address.sun_path)) return -1;
  path.copy(address.sun_path, path.size());
  const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  if (fd < 0) return -1;
  if (connect(fd, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0) return fd;
  close(fd);
  return -1;
}

}  // namespace vellora
