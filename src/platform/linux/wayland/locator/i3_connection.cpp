#include "platform/linux/wayland/locator/i3_connection.h"

#include <array>
#include <cerrno>
#include <memory>

#include <sys/socket.h>
#include <unistd.h>

#include "platform/linux/socket/local_socket.h"
#include "platform/linux/wayland/locator/readable_source.h"

namespace vellora {

namespace {

// Taken at once: a peer that never stops must not keep the loop from everything else.
constexpr std::size_t mostAtOnce = 65536;

}  // namespace

I3Connection::~I3Connection() {
  source_.reset();
  if (fd_ >= 0) close(fd_);
}

bool I3Connection::open(const std::string& path) {
  fd_ = connectToLocalSocket(path);
  if (fd_ < 0) return false;
  source_ = whenReadable(fd_, [this] { read(); });
  return true;
}

bool I3Connection::send(std::uint32_t type, std::string_view payload) {
  const std::string message = encodeI3Message(type, payload);
  const ssize_t sent = ::send(fd_, message.data(), message.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
  return sent == static_cast<ssize_t>(message.size());
}

void I3Connection::read() {
  std::array<char, mostAtOnce> bytes;
  const ssize_t count = recv(fd_, bytes.data(), bytes.size(), MSG_DONTWAIT);
  if (count < 0 && (errno == EAGAIN || errno == EINTR)) return;
  // What is called may destroy this object.
  const Listener listener = listener_;
  if (count <= 0) return listener.ended();
  reader_.take({bytes.data(), static_cast<std::size_t>(count)});
  const std::weak_ptr<bool> alive = alive_;
  while (const auto message = reader_.next()) {
    listener.told(*message);
    if (alive.expired()) return;
  }
  if (reader_.isBroken()) listener.ended();
}

}  // namespace vellora
