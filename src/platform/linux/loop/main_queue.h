#pragma once

#include <functional>
#include <memory>

#include "platform/linux/glib/glib_ptr.h"

namespace vellora {

// Work for the main thread, from any thread, in the order of the calls. Made and destroyed on the
// main thread, whose default main context runs the work.
class MainQueue {
 public:
  using Work = std::function<void()>;

  MainQueue();
  ~MainQueue();
  MainQueue(const MainQueue&) = delete;
  MainQueue& operator=(const MainQueue&) = delete;

  // Any thread. Once the queue is closed or gone, the function drops what it is given.
  std::function<void(Work)> handOff() const;

  // Drops all work, now and from here on. Main thread.
  void close();

 private:
  class State;

  static gboolean wakened(gint descriptor, GIOCondition condition, gpointer state) noexcept;

  std::shared_ptr<State> state_;
  GSourcePtr source_;
};

}  // namespace vellora
