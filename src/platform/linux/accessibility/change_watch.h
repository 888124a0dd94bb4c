#pragma once

#include <cstddef>
#include <set>
#include <string>

#include "platform/linux/accessibility/accessible_store.h"
#include "platform/linux/accessibility/bus_connection.h"

namespace vellora {

// What a program has signalled of its objects. `everything` stands for more than can be said object
// by object.
struct AccessibleChanges {
  bool everything = false;
  std::set<std::string> objects;  // paths of those whose name, description, role or id is another
};

// Has a program tell when its objects change: the signals ChildrenChanged and PropertyChange of
// org.a11y.atspi.Event.Object. Belongs to one connection, which must outlive it or no longer be
// used. One thread at a time.
class ChangeWatch {
 public:
  // Once. Lines up what asks for the signals; they are complete from when that is answered on.
  // `root` is the program's root object.
  void begin(BusConnection& bus, const AccessibleReference& root);

  // Whether this is the program that `begin` was given, and all that was asked of it was granted.
  bool isTold(const std::string& busName) const;

  // The changes since the last call.
  AccessibleChanges take();

 private:
  void subscribe(BusConnection& bus, const std::string& condition);
  void note(sd_bus_message* signal);

  std::string program_;
  std::size_t open_ = 0;  // requests that were not granted yet
  bool isRefused_ = false;
  AccessibleChanges changes_;
};

}  // namespace vellora
