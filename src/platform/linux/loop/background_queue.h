#pragma once

#include <memory>
#include <string_view>

#include "platform/application.h"

namespace vellora {

// A serial queue on one detached thread, which starts with the first piece of work. The thread owns
// everything it touches together with the queue, so nobody ever has to wait for it.
class BackgroundQueue : public SerialQueue {
 public:
  class State;

  // `label` becomes the thread's name; the kernel keeps its first 15 bytes.
  explicit BackgroundQueue(std::string_view label);
  ~BackgroundQueue() override;
  BackgroundQueue(const BackgroundQueue&) = delete;
  BackgroundQueue& operator=(const BackgroundQueue&) = delete;

  void async(std::function<void()> work) override;

  // For asking `isWorking` later, also when the queue is gone.
  std::weak_ptr<const State> state() const { return state_; }

  // Whether the queue's thread is in the middle of a piece of work, or about to begin one. Any
  // thread.
  static bool isWorking(const std::weak_ptr<const State>& state);

 private:
  std::shared_ptr<State> state_;
};

}  // namespace vellora
