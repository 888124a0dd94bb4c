#pragma once

#include <memory>

#include <systemd/sd-bus.h>

namespace vellora {

struct BusCloser {
  // Without flushing: that could wait for a daemon that hangs.
  void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
};
struct BusMessageUnref {
  void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
};
struct BusSlotUnref {
  void operator()(sd_bus_slot* slot) const { sd_bus_slot_unref(slot); }
};

using BusPtr = std::unique_ptr<sd_bus, BusCloser>;
using BusMessagePtr = std::unique_ptr<sd_bus_message, BusMessageUnref>;
// Letting go of the slot of a call forgets the call: its reply is dropped when it comes.
using BusSlotPtr = std::unique_ptr<sd_bus_slot, BusSlotUnref>;

}  // namespace vellora
