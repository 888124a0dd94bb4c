#pragma once

#include <memory>

#include "platform/linux/accessibility/bus_connection.h"
#include "platform/linux/accessibility/status_query.h"

namespace vellora {

// Whether the session's accessibility is there and switched on, kept by the session bus's signals
// on a connection of its own. It needs no event loop: each call takes in what has arrived. Main
// thread.
class TrustWatch {
 public:
  // The first call, and only that one, waits for the session's answer, 250 ms at most.
  bool isTrusted();

  // Switches accessibility on without waiting for the outcome.
  void enable();

 private:
  // The connection, made anew where there is none or the last one was lost; null without a session.
  BusConnection* connect();
  void ask();

  bool waited_ = false;
  bool trusted_ = false;
  bool asking_ = false;
  bool askAgain_ = false;
  std::unique_ptr<BusConnection> session_;  // last: its calls name the members above
};

}  // namespace vellora
