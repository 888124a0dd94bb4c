#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include <sys/types.h>
#include <systemd/sd-bus.h>

// What the messages of a cold walk cost by themselves: the same questions, as many under way at
// once, to whoever is on the other side of a private connection, and answers that are thrown away.
namespace vellora::wire {

struct BusDeleter {
  void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
};
using BusPtr = std::unique_ptr<sd_bus, BusDeleter>;

// The objects of a program's first window, and those of them whose places a walk asks for.
struct Objects {
  std::vector<std::string> all;
  std::vector<std::string> placed;
};

// A program, by way of the accessibility bus and over the bus of its own whose address it tells
// there; null where it has none.
struct Program {
  BusPtr bus;
  std::string name;  // on that bus
  BusPtr direct;
};
Program connect(pid_t pid);
BusPtr connectDirectly(pid_t pid);
// Asks the program itself, over its own bus. Empty where it does not answer.
Objects objectsOf(sd_bus* direct);
// All properties and the role of each object, and the places; false when an answer is missing.
bool askAll(sd_bus* bus, const Objects& objects);
// The states of the first object, and the places: what a reading asks that remembers the rest.
bool askPlaces(sd_bus* bus, const Objects& objects);
// What following asks in one reading: the states over the accessibility bus, behind the program's
// signals; then directly the places, which come as their upper edges, and all properties of some of
// the objects, for what is not signalled.
bool askReading(const Program& program, const Objects& objects,
                const std::vector<std::string>& again, std::vector<std::int32_t>& tops);

// A process that answers those questions with the same words each time.
class EmptyPeer {
 public:
  EmptyPeer();
  ~EmptyPeer();
  EmptyPeer(const EmptyPeer&) = delete;
  EmptyPeer& operator=(const EmptyPeer&) = delete;

  pid_t pid() const { return pid_; }
  sd_bus* bus() const { return bus_.get(); }

 private:
  pid_t pid_ = -1;
  BusPtr bus_;
};

}  // namespace vellora::wire
