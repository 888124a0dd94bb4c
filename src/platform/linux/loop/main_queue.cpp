#include "platform/linux/loop/main_queue.h"

#include <cstdint>
#include <cstdlib>
#include <mutex>
#include <utility>
#include <vector>

#include <glib-unix.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace vellora {

// Shared by the queue and every hand-off, so that a late hand-off finds a closed queue, not a
// destroyed one. The wake-up is an eventfd, not g_main_context_invoke: a std::mutex and a file
// descriptor are what the thread sanitizer understands, GLib's own locks are not.
class MainQueue::State {
 public:
  State() : wake_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    if (wake_ < 0) std::abort();  // no descriptors left: there is no program without an event loop
  }
  ~State() { ::close(wake_); }
  State(const State&) = delete;
  State& operator=(const State&) = delete;

  int wakeDescriptor() const { return wake_; }

  void push(Work work) {
    {
      const std::lock_guard lock(mutex_);
      if (closed_) return;
      work_.push_back(std::move(work));
    }
    const std::uint64_t one = 1;
    // Fails only when the counter is full, and then the loop is awake anyway.
    [[maybe_unused]] const auto written = ::write(wake_, &one, sizeof one);
  }

  std::vector<Work> take() {
    std::uint64_t count = 0;
    [[maybe_unused]] const auto read = ::read(wake_, &count, sizeof count);
    const std::lock_guard lock(mutex_);
    return std::exchange(work_, {});
  }

  // What was left is given back, to be destroyed outside the lock.
  std::vector<Work> close() {
    const std::lock_guard lock(mutex_);
    closed_ = true;
    return std::exchange(work_, {});
  }

  bool closed() const {
    const std::lock_guard lock(mutex_);
    return closed_;
  }

 private:
  const int wake_;
  mutable std::mutex mutex_;
  std::vector<Work> work_;
  bool closed_ = false;
};

MainQueue::MainQueue()
    : state_(std::make_shared<State>()),
      source_(g_unix_fd_source_new(state_->wakeDescriptor(), G_IO_IN)) {
  g_source_set_callback(source_.get(), G_SOURCE_FUNC(&MainQueue::wakened),
                        new std::shared_ptr<State>(state_),
                        [](gpointer state) { delete static_cast<std::shared_ptr<State>*>(state); });
  // While a source that may not recurse is dispatched, GLib takes its descriptor out of the poll
  // set and puts it back, and wakes the loop for each. Nothing runs the loop from within a piece of
  // work.
  g_source_set_can_recurse(source_.get(), TRUE);
  g_source_attach(source_.get(), nullptr);
}

MainQueue::~MainQueue() { close(); }

void MainQueue::close() { const auto dropped = state_->close(); }

std::function<void(MainQueue::Work)> MainQueue::handOff() const {
  return [state = state_](Work work) { state->push(std::move(work)); };
}

gboolean MainQueue::wakened(gint, GIOCondition, gpointer data) noexcept {
  const auto state = *static_cast<std::shared_ptr<State>*>(data);
  for (auto& work : state->take()) {
    if (state->closed()) break;  // an earlier piece closed the queue
    work();
  }
  return G_SOURCE_CONTINUE;
}

}  // namespace vellora
