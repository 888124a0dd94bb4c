#include "platform/linux/wayland/locator/fake_i3.h"

#include <array>
#include <stdexcept>
#include <utility>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "platform/linux/wayland/locator/readable_source.h"

namespace vellora {

FakeI3::FakeI3(std::string path) : path_(std::move(path)) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path_.copy(address.sun_path, sizeof(address.sun_path) - 1);
  listening_ = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  if (bind(listening_, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0 ||
      listen(listening_, 8) != 0) {
    throw std::runtime_error("no socket at " + path_);
  }
  accepting_ = whenReadable(listening_, [this] { accept(); });
}

FakeI3::~FakeI3() {
  hangUp();
  accepting_.reset();
  close(listening_);
  unlink(path_.c_str());
}

void FakeI3::say(std::string_view bytes) {
  for (const auto& client : clients_) {
    for (std::string_view rest = bytes; !rest.empty();) {
      const ssize_t sent = send(client->fd, rest.data(), rest.size(), MSG_NOSIGNAL);
      if (sent <= 0) break;
      rest.remove_prefix(static_cast<std::size_t>(sent));
    }
  }
}

void FakeI3::sayEvent(std::string_view json) { say(encodeI3Message(0x80000003U, json)); }

void FakeI3::hangUp() {
  for (const auto& client : clients_) {
    client->source.reset();
    close(client->fd);
  }
  clients_.clear();
}

void FakeI3::accept() {
  const int fd = accept4(listening_, nullptr, nullptr, SOCK_CLOEXEC);
  if (fd < 0) return;
  ++connectionsMade;
  clients_.push_back(std::make_unique<Client>(Client{fd, {}, nullptr}));
  Client& client = *clients_.back();
  client.source = whenReadable(fd, [this, &client] { read(client); });
}

void FakeI3::read(Client& client) {
  std::array<char, 4096> bytes;
  const ssize_t count = recv(client.fd, bytes.data(), bytes.size(), MSG_DONTWAIT);
  if (count <= 0) {
    close(client.fd);
    std::erase_if(clients_, [&](const auto& one) { return one.get() == &client; });
    return;
  }
  client.reader.take({bytes.data(), static_cast<std::size_t>(count)});
  std::vector<I3Message> messages;
  while (auto message = client.reader.next()) messages.push_back(*std::move(message));
  for (const I3Message& message : messages) {
    if (message.type == I3Message::subscribe) {
      subscriptions.push_back(message.payload);
      say(encodeI3Message(I3Message::subscribe, R"({"success": true})"));
    } else if (message.type == I3Message::getTree) {
      ++treesAsked;
      if (const std::string said = answer(); !said.empty()) say(said);
    }
    if (clients_.empty()) return;
  }
}

}  // namespace vellora
