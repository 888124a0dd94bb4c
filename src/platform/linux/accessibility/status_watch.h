#pragma once

#include <memory>

#include "platform/linux/accessibility/bus_connection.h"
#include "platform/linux/accessibility/status_query.h"

namespace vellora {

// The status of the session's accessibility, kept by the session bus's signals on a connection of
// its own. It needs no event loop: each call takes in what has arrived. One thread at a time.
class StatusWatch {
 public:
  // As last told; while nothing is known there is no bus, and accessibility is off. Waits for the
  // session's first answer, `first` at most, and for the one after a change `later` at most, which
  // may be nothing. A question that fails is asked once more.
  AccessibilityStatus status(Steady::duration first, Steady::duration later);

  // Switches accessibility on without waiting for the outcome, now and whenever the session bus
  // or its accessibility service is lost; false where there is none now.
  bool enable();

 private:
  // The connection, made anew where there is none or the last one was lost; null without a session.
  BusConnection* connect();
  void noteOwner(sd_bus_message* changed);
  void ask();
  void askAnew();

  bool waited_ = false;
  AccessibilityStatus status_;
  bool asking_ = false;
  bool askAgain_ = false;
  int failures_ = 0;  // since the last answer or signal
  bool enabling_ = false;
  std::unique_ptr<BusConnection> session_;  // last: its calls name the members above
};

}  // namespace vellora
