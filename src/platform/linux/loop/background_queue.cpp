#include "platform/linux/loop/background_queue.h"

#include <condition_variable>
#include <csignal>
#include <deque>
#include <mutex>
#include <string>
#include <thread>
#include <utility>

#include <pthread.h>

namespace vellora {
namespace {

using Work = std::function<void()>;

constexpr std::size_t longestThreadName = 15;  // pthread_setname_np(3)

}  // namespace

class BackgroundQueue::State {
 public:
  explicit State(std::string_view label) : name_(label.substr(0, longestThreadName)) {}

  // Whether this is the first piece, for which there is no thread yet.
  bool push(Work work) {
    bool first = false;
    {
      const std::lock_guard lock(mutex_);
      pending_.push_back(std::move(work));
      first = !std::exchange(started_, true);
    }
    // Only now: a thread that is woken while the lock is held sleeps again at once.
    changed_.notify_one();
    return first;
  }

  // What was left is given back, to be destroyed outside the lock.
  std::deque<Work> close() {
    const std::lock_guard lock(mutex_);
    closed_ = true;
    changed_.notify_one();
    return std::exchange(pending_, {});
  }

  void work() {
    pthread_setname_np(pthread_self(), name_.c_str());
    while (auto piece = next()) piece();
  }

  bool working() const {
    const std::lock_guard lock(mutex_);
    return working_ || !pending_.empty();
  }

 private:
  Work next() {
    std::unique_lock lock(mutex_);
    working_ = false;
    changed_.wait(lock, [this] { return closed_ || !pending_.empty(); });
    if (closed_) return {};
    working_ = true;
    auto piece = std::move(pending_.front());
    pending_.pop_front();
    return piece;
  }

  const std::string name_;
  mutable std::mutex mutex_;
  std::condition_variable changed_;
  std::deque<Work> pending_;
  bool started_ = false;
  bool working_ = false;
  bool closed_ = false;
};

BackgroundQueue::BackgroundQueue(std::string_view label) : state_(std::make_shared<State>(label)) {}

BackgroundQueue::~BackgroundQueue() { const auto dropped = state_->close(); }

void BackgroundQueue::async(std::function<void()> work) {
  if (!work || !state_->push(std::move(work))) return;
  // Signals are the main loop's business: with all of them blocked here, no read is interrupted.
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &before);
  std::thread([state = state_] { state->work(); }).detach();
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

bool BackgroundQueue::isWorking(const std::weak_ptr<const State>& state) {
  const auto held = state.lock();
  return held && held->working();
}

}  // namespace vellora
