#pragma once

#include <memory>
#include <mutex>
#include <string>

#include "platform/linux/accessibility/bus_connection.h"

namespace vellora {

// The connections that a reading needs: to the session bus, which tells where the accessibility bus
// is and whether it may be used, and to that bus. They stay open from one reading to the next. One
// thread at a time.
class ReadingConnection {
 public:
  // The accessibility bus, connected anew where that is needed; null when there is none, when
  // accessibility is switched off, or when no answer comes before the deadline.
  BusConnection* prepare(Steady::duration timeout, Steady::time_point deadline);

 private:
  std::unique_ptr<BusConnection> session_;
  std::unique_ptr<BusConnection> bus_;
  std::string address_;  // of bus_
};

// Hands the connection from one reading to the next, which may run on another thread. Two readings
// at once each have their own, and one of them is kept. Any thread.
class ConnectionSlot {
 public:
  // The one that was kept, or a new one.
  std::unique_ptr<ReadingConnection> take();
  void keep(std::unique_ptr<ReadingConnection> connection);

 private:
  std::mutex mutex_;
  std::unique_ptr<ReadingConnection> kept_;
};

}  // namespace vellora
