#pragma once

#include <string>
#include <vector>

#include <systemd/sd-bus.h>

#include "platform/linux/accessibility/bus_handles.h"
#include "platform/linux/accessibility/fake_session.h"

namespace vellora {

// The bus of its own that a fake program has, in the program's process: a D-Bus server without
// names, over which it is asked what it is asked over the accessibility bus, too.
class FakeOwnBus {
 public:
  // `onCall` is told of each call, with `data`.
  FakeOwnBus(const FakeProgram& program, CallCounts& counts, sd_bus_message_handler_t onCall,
             void* data);
  ~FakeOwnBus();
  FakeOwnBus(const FakeOwnBus&) = delete;
  FakeOwnBus& operator=(const FakeOwnBus&) = delete;

  const std::string& address() const { return address_; }
  // Whether the message came over this bus.
  bool isHere(sd_bus_message* call) const;

  // Does what there is to be done; true when there may be more.
  bool process();
  // Waits until there is something to be done, here or on the other bus.
  void wait(sd_bus* other) const;

 private:
  void take();

  const FakeProgram program_;
  CallCounts& counts_;
  const sd_bus_message_handler_t onCall_;
  void* const data_;
  int listener_ = -1;
  std::string address_;
  std::vector<BusPtr> links_;
};

}  // namespace vellora
