#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "platform/linux/accessibility/bus_connection.h"
#include "platform/linux/accessibility/described_memory.h"
#include "platform/linux/accessibility/media_players.h"
#include "platform/linux/accessibility/program_memory.h"
#include "platform/linux/accessibility/status_watch.h"

namespace vellora {

// The connections that a reading needs: to the session bus, which tells where the accessibility bus
// is and whether it may be used, and to that bus; and what is known of the program that is read
// over it. They stay from one reading to the next. One thread at a time.
class ReadingConnection {
 public:
  explicit ReadingConnection(Steady::duration longestMemory) : longestMemory_(longestMemory) {}

  // A process's program on the accessibility bus, and what is known of it.
  struct Access {
    BusConnection& bus;
    ProgramMemory& memory;
    DescribedMemory& described;  // the same for a described player
  };
  // The bus is connected anew where that is needed; nothing when there is none or when
  // accessibility is switched off. Waits for the session's word on that where it was not given
  // since the last change, `timeout` at most, which is also the timeout of each call over the bus.
  std::optional<Access> prepare(std::int32_t processIdentifier, Steady::duration timeout);

  MediaPlayers& mediaPlayers() { return mediaPlayers_; }
  Steady::duration longestMemory() const { return longestMemory_; }

 private:
  Steady::duration longestMemory_;
  StatusWatch status_;
  std::unique_ptr<BusConnection> bus_;
  std::string address_;                         // of bus_
  std::unique_ptr<ProgramMemory> memory_;       // of what came over bus_
  std::unique_ptr<DescribedMemory> described_;  // the same
  MediaPlayers mediaPlayers_;
};

class ConnectionSlot;

// A connection that goes back when its reading is over.
struct ConnectionReturner {
  std::shared_ptr<ConnectionSlot> slot;
  void operator()(ReadingConnection* connection) const;
};
using LentConnection = std::unique_ptr<ReadingConnection, ConnectionReturner>;

// Hands the connection from one reading to the next, which may run on another thread. Two readings
// at once each have their own, and one of them is kept. Any thread.
class ConnectionSlot : public std::enable_shared_from_this<ConnectionSlot> {
 public:
  explicit ConnectionSlot(Steady::duration longestMemory) : longestMemory_(longestMemory) {}

  // The one that was kept, or a new one.
  LentConnection lend();

  // Closes the one that is kept when it has been for as long as `rest`: signals come to it, and
  // nobody but a reading takes them in.
  void closeRested(Steady::duration rest);

 private:
  friend ConnectionReturner;
  void keep(std::unique_ptr<ReadingConnection> connection);

  const Steady::duration longestMemory_;
  std::mutex mutex_;
  std::unique_ptr<ReadingConnection> kept_;
  Steady::time_point keptSince_;
};

}  // namespace vellora
