#include "platform/linux/wayland/locator/fake_hyprland.h"

#include <array>
#include <stdexcept>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "platform/linux/wayland/locator/readable_source.h"

namespace vellora {

FakeHyprland::FakeHyprland(const std::string& folder)
    : eventSocket_(listenAt(folder + "/.socket2.sock")),
      requestSocket_(listenAt(folder + "/.socket.sock")),
      acceptingListeners_(whenReadable(eventSocket_, [this] { acceptListener(); })),
      acceptingRequests_(whenReadable(requestSocket_, [this] { acceptRequest(); })) {}

FakeHyprland::~FakeHyprland() {
  hangUp();
  for (const auto& client : clients_) close(client->fd);
  close(eventSocket_);
  close(requestSocket_);
  for (const std::string& path : paths_) unlink(path.c_str());
}

int FakeHyprland::listenAt(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path.copy(address.sun_path, sizeof(address.sun_path) - 1);
  const int fd = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  if (bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0 ||
      listen(fd, 10) != 0) {
    throw std::runtime_error("no socket at " + path);
  }
  paths_.push_back(path);
  return fd;
}

void FakeHyprland::say(std::string_view bytes) {
  for (const int fd : listening_) {
    for (std::string_view rest = bytes; !rest.empty();) {
      const ssize_t sent = send(fd, rest.data(), rest.size(), MSG_NOSIGNAL);
      if (sent <= 0) break;
      rest.remove_prefix(static_cast<std::size_t>(sent));
    }
  }
}

std::size_t FakeHyprland::pour(std::string_view bytes) {
  std::size_t poured = 0;
  for (const auto& client : clients_) {
    const ssize_t sent = send(client->fd, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    if (sent > 0) poured += static_cast<std::size_t>(sent);
  }
  return poured;
}

void FakeHyprland::hangUp() {
  for (const int fd : listening_) close(fd);
  listening_.clear();
}

void FakeHyprland::acceptListener() {
  const int fd = accept4(eventSocket_, nullptr, nullptr, SOCK_CLOEXEC);
  if (fd < 0) return;
  ++listeners;
  listening_.push_back(fd);
}

void FakeHyprland::acceptRequest() {
  const int fd = accept4(requestSocket_, nullptr, nullptr, SOCK_CLOEXEC);
  if (fd < 0) return;
  clients_.push_back(std::make_unique<Client>(Client{fd, nullptr}));
  Client& client = *clients_.back();
  client.source = whenReadable(fd, [this, &client] { answer(client); });
}

void FakeHyprland::answer(Client& client) {
  std::array<char, 1024> bytes;
  const ssize_t count = recv(client.fd, bytes.data(), bytes.size(), MSG_DONTWAIT);
  if (count > 0) {
    asked.emplace_back(bytes.data(), static_cast<std::size_t>(count));
    const auto found = answers.find(asked.back());
    if (found == answers.end()) return;
    send(client.fd, found->second.data(), found->second.size(), MSG_NOSIGNAL);
  }
  close(client.fd);
  std::erase_if(clients_, [&](const auto& one) { return one.get() == &client; });
}

}  // namespace vellora
