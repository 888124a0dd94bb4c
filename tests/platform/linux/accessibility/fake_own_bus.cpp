#include "platform/linux/accessibility/fake_own_bus.h"

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <stdexcept>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <systemd/sd-id128.h>
#include <unistd.h>

namespace vellora {

FakeOwnBus::FakeOwnBus(const FakeProgram& program, CallCounts& counts,
                       sd_bus_message_handler_t onCall, void* data)
    : program_(program), counts_(counts), onCall_(onCall), data_(data) {
  const std::string name = "vellora-own-bus-" + std::to_string(getpid());
  address_ = program.ownAddress.value_or("unix:abstract=" + name);
  if (program.ownBus == OwnBus::missing) return;
  listener_ = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  sockaddr_un place{};
  place.sun_family = AF_UNIX;
  std::memcpy(place.sun_path + 1, name.data(), name.size());
  const auto size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + 1 + name.size());
  if (bind(listener_, reinterpret_cast<const sockaddr*>(&place), size) != 0 ||
      listen(listener_, 8) != 0) {
    throw std::runtime_error("no bus of its own");
  }
}

FakeOwnBus::~FakeOwnBus() {
  if (listener_ >= 0) close(listener_);
}

bool FakeOwnBus::isHere(sd_bus_message* call) const {
  for (const BusPtr& link : links_) {
    if (sd_bus_message_get_bus(call) == link.get()) return true;
  }
  return false;
}

void FakeOwnBus::take() {
  const int socket = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
  if (socket < 0) return;
  ++counts_.links;
  sd_bus* made = nullptr;
  sd_id128_t identifier{};
  sd_id128_randomize(&identifier);
  if (sd_bus_new(&made) < 0 || sd_bus_set_fd(made, socket, socket) < 0 ||
      sd_bus_set_server(made, 1, identifier) < 0 ||
      sd_bus_add_filter(made, nullptr, onCall_, data_) < 0 || sd_bus_start(made) < 0) {
    throw std::runtime_error("no link");
  }
  links_.emplace_back(made);
}

bool FakeOwnBus::process() {
  if (listener_ < 0 || program_.ownBus == OwnBus::mute) return false;
  take();
  const bool isOver = counts_.ownBusIsOver;
  if (isOver && program_.ownBus == OwnBus::hangs) return false;
  bool isMore = false;
  for (auto link = links_.begin(); link != links_.end();) {
    if (isOver && program_.ownBus == OwnBus::babbles) {
      const std::string babble(256, 'x');
      (void)!send(sd_bus_get_fd(link->get()), babble.data(), babble.size(), MSG_NOSIGNAL);
    }
    const int result = isOver ? -ECONNRESET : sd_bus_process(link->get(), nullptr);
    if (result > 0) isMore = true;
    link = result < 0 ? links_.erase(link) : link + 1;
  }
  return isMore;
}

void FakeOwnBus::wait(sd_bus* other) const {
  std::vector<pollfd> inputs;
  const auto add = [&inputs](int socket, int events) {
    if (socket >= 0 && events > 0) inputs.push_back({socket, static_cast<short>(events), 0});
  };
  std::uint64_t timeout = 0;
  if (sd_bus_get_timeout(other, &timeout) > 0 && timeout == 0) return;
  add(sd_bus_get_fd(other), sd_bus_get_events(other));
  if (program_.ownBus != OwnBus::mute) add(listener_, POLLIN);
  if (!counts_.ownBusIsOver) {
    for (const BusPtr& link : links_) {
      if (sd_bus_get_timeout(link.get(), &timeout) > 0 && timeout == 0) return;
      add(sd_bus_get_fd(link.get()), sd_bus_get_events(link.get()));
    }
  }
  // The test may say at any moment that the bus is over.
  poll(inputs.data(), inputs.size(), program_.ownBus > OwnBus::mute ? 20 : -1);
}

}  // namespace vellora
