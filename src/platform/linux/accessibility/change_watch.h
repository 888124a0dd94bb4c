#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <utility>

#include "platform/linux/accessibility/accessible_store.h"
#include "platform/linux/accessibility/bus_connection.h"

namespace vellora {

// What a program has signalled of its objects. `everything` stands for more than can be said object
// by object.
struct AccessibleChanges {
  bool everything = false;
  std::set<std::string> objects;  // paths of those whose name, description, role or id is another
};

// Has a program tell when its objects change: the signals ChildrenChanged, PropertyChange and
// StateChanged (to defunct) of org.a11y.atspi.Event.Object. The connection must outlive it and have
// no other subscriptions. One thread at a time.
class ChangeWatch {
 public:
  explicit ChangeWatch(BusConnection& bus) : bus_(bus) {}
  ~ChangeWatch() { end(); }
  ChangeWatch(const ChangeWatch&) = delete;
  ChangeWatch& operator=(const ChangeWatch&) = delete;

  // Lines up what asks for the signals; they come for all changes after that is answered. `root` is
  // the program's root object. Ends the watch of another program.
  void begin(const AccessibleReference& root);

  // Has no more signals sent.
  void end();

  // Whether this is the program that `begin` was given, and all that was asked of it was granted.
  bool isTold(const std::string& busName) const;

  // The D-Bus address of the program's own bus, as it told when it was asked; empty where it has
  // none, and when it was taken already.
  std::string takeAddress() { return std::exchange(address_, {}); }

  // The changes since the last call.
  AccessibleChanges take();

 private:
  void subscribe(const std::string& condition);
  void note(sd_bus_message* signal);

  BusConnection& bus_;
  std::string program_;
  std::size_t open_ = 0;  // requests that were not granted yet
  bool isRefused_ = false;
  std::string address_;
  AccessibleChanges changes_;
};

}  // namespace vellora
