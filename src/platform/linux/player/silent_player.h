#pragma once

#include <memory>
#include <string>

#include "platform/linux/glib/session_bus.h"
#include "platform/linux/glib/waiting_room.h"

namespace vellora {

// The player that let a request time out. It is asked one thing more, which nobody waits for, and
// counts as silent until it answers that or leaves the bus: so a player that hangs delays one
// request, and finds no heap of commands when it wakes. Main thread.
class SilentPlayer {
 public:
  explicit SilentPlayer(SessionBus bus);
  ~SilentPlayer();
  SilentPlayer(const SilentPlayer&) = delete;
  SilentPlayer& operator=(const SilentPlayer&) = delete;

  // The player of this bus name did not answer in time; it takes the place of an earlier one.
  void note(const std::string& busName);

  // Whether that player still owes its answer. Does not wait.
  bool isSilent(const std::string& busName);

 private:
  static void answered(GObject* bus, GAsyncResult* result, gpointer owes) noexcept;

  SessionBus bus_;
  WaitingRoom room_;
  GObjectPtr<GCancellable> end_;
  std::string busName_;
  std::shared_ptr<bool> owes_ = std::make_shared<bool>(false);
};

}  // namespace vellora
