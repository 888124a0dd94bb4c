#pragma once

namespace vellora {

// While it lives, the process ends within two seconds of a SIGTERM or SIGINT, with status 0, even
// where the main thread waits for a display that does not answer. What GLib does on these signals
// it does all the same: its sources for both must be there before, and one at a time of this. Main
// thread.
class BoundedEnd {
 public:
  BoundedEnd();
  ~BoundedEnd();
  BoundedEnd(const BoundedEnd&) = delete;
  BoundedEnd& operator=(const BoundedEnd&) = delete;
};

}  // namespace vellora
