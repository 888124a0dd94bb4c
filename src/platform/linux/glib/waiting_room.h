#pragma once

#include <functional>

#include "platform/linux/glib/deadline.h"
#include "platform/linux/glib/glib_ptr.h"

namespace vellora {

// A main context beside the program's own, in which answers and signals of the bus can be awaited
// without anything else of the program running meanwhile. One thread.
class WaitingRoom {
 public:
  WaitingRoom() : context_(g_main_context_new()) {}

  // What `start` begins has its callbacks here.
  void enter(const std::function<void()>& start) const;

  // Runs callbacks until `condition` holds; false when the deadline comes first.
  bool waitUntil(const std::function<bool()>& condition, const Deadline& deadline) const;

  // Runs the callbacks that are due.
  void catchUp() const;

 private:
  GMainContextPtr context_;
};

}  // namespace vellora
