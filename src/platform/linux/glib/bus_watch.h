#pragma once

#include <chrono>
#include <functional>

#include "platform/linux/glib/session_bus.h"

namespace vellora {

// Follows the session bus from one connection to the next: a bus that went away is looked for again
// four times a second, by the event loop. Main thread.
class BusWatch {
 public:
  // `present` is told of each connection, of the first already here where a bus answers. `gone` is
  // told when that has been closed, and gives up every share in it: the next is made only when
  // nobody in the process has one.
  BusWatch(std::function<void(const SessionBus& bus)> present, std::function<void()> gone);
  ~BusWatch();
  BusWatch(const BusWatch&) = delete;
  BusWatch& operator=(const BusWatch&) = delete;

 private:
  static void closed(GDBusConnection* bus, gboolean byPeer, GError* error, gpointer self) noexcept;

  void look(std::chrono::milliseconds patience);
  void lookLater();
  void drop();

  std::function<void(const SessionBus& bus)> present_;
  std::function<void()> gone_;
  SessionBus bus_;
  gulong closing_ = 0;  // the handler of the connection's end
  GSourcePtr looking_;
};

}  // namespace vellora
