#pragma once

#include "platform/linux/glib/glib_ptr.h"

namespace vellora {

class XSession;

// Has GLib's default main context dispatch a session's events: when the connection has data, and
// also when libxcb has already read an event while it waited for a reply, which no file descriptor
// shows. Main thread.
class XEventSource {
 public:
  explicit XEventSource(XSession& session);

 private:
  GSourcePtr source_;
};

}  // namespace vellora
