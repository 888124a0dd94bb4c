#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "platform/linux/glib/glib_ptr.h"
#include "platform/linux/wayland/locator/i3_message.h"

namespace vellora {

// A connection to a compositor's IPC socket that never waits. Main thread.
class I3Connection {
 public:
  // Told from the loop of each message, and once when the peer is gone or is no speaker of the
  // protocol: then the connection is of no more use. Either may destroy the connection.
  struct Listener {
    std::function<void(const I3Message& message)> told;
    std::function<void()> ended;
  };

  explicit I3Connection(Listener listener) : listener_(std::move(listener)) {}
  ~I3Connection();
  I3Connection(const I3Connection&) = delete;
  I3Connection& operator=(const I3Connection&) = delete;

  // Once. False where nobody takes connections at that path now.
  bool open(const std::string& path);
  // False where the peer does not take the message at once, which a short one always is unless the
  // peer is gone or has left many others unread.
  bool send(std::uint32_t type, std::string_view payload = {});

 private:
  void read();

  const Listener listener_;
  int fd_ = -1;
  I3MessageReader reader_;
  GSourcePtr source_;
  const std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace vellora
