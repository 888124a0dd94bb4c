#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

#include "platform/application.h"
#include "support/log.h"

namespace vellora {

// An application whose timers, background work and hand-offs happen when the test says so. Its run
// launches the delegate and returns. Its log holds one line a call.
class FakeApplication final : public Application {
 public:
  struct TimerState {
    double interval = 0;
    std::function<void()> fire;
    bool stopped = false;
  };
  struct QueueState {
    std::string label;
    std::deque<std::function<void()>> work;
    std::size_t accepted = 0;
    bool gone = false;
  };

  explicit FakeApplication(Log& log) : log_(log) {}

  void setAccessoryPolicy() override { log_.push_back("accessory policy"); }
  void setDelegate(std::weak_ptr<ApplicationDelegate> value) override {
    delegate = std::move(value);
    log_.push_back("delegate");
  }
  void run() override {
    log_.push_back("run");
    if (onRun) {
      onRun();
    } else if (const auto held = delegate.lock()) {
      held->applicationDidFinishLaunching();
    }
  }
  std::unique_ptr<Timer> scheduleTimer(double interval, std::function<void()> fire) override {
    log_.push_back("timer");
    timers.push_back(std::make_shared<TimerState>(TimerState{interval, std::move(fire), false}));
    return std::make_unique<FakeTimer>(timers.back());
  }
  std::unique_ptr<SerialQueue> makeSerialQueue(std::string_view label) override {
    queues.push_back(std::make_shared<QueueState>());
    queues.back()->label = label;
    return std::make_unique<FakeQueue>(queues.back());
  }
  std::function<void(std::function<void()>)> mainHandOff() override {
    return [waiting = main_](std::function<void()> work) { waiting->push_back(std::move(work)); };
  }
  void terminate() override {
    log_.push_back("terminate");
    ++terminations;
  }

  // Fires every running timer once.
  void fireTimers() {
    const auto all = timers;
    for (const auto& timer : all) {
      if (!timer->stopped) timer->fire();
    }
  }
  // Runs what waits on the background queues, on a thread that has ended when this returns how many
  // pieces ran. The work of a queue that is gone is dropped.
  std::size_t runBackground() {
    std::size_t count = 0;
    for (const auto& queue : queues) {
      if (queue->gone) queue->work.clear();
    }
    if (backgroundWaiting() == 0) return count;
    std::thread([&] {
      for (const auto& queue : queues) {
        while (!queue->work.empty()) {
          const auto work = std::move(queue->work.front());
          queue->work.pop_front();
          work();
          ++count;
        }
      }
    }).join();
    return count;
  }
  // Runs what was handed to the main thread up to now; returns how many pieces ran.
  std::size_t runMain() {
    const auto work = std::exchange(*main_, {});
    for (const auto& piece : work) piece();
    return work.size();
  }
  std::size_t backgroundWaiting() const {
    std::size_t count = 0;
    for (const auto& queue : queues) count += queue->work.size();
    return count;
  }
  std::size_t mainWaiting() const { return main_->size(); }

  std::weak_ptr<ApplicationDelegate> delegate;
  std::vector<std::shared_ptr<TimerState>> timers;
  std::vector<std::shared_ptr<QueueState>> queues;
  std::function<void()> onRun;  // in place of the launch
  int terminations = 0;

 private:
  class FakeTimer final : public Timer {
   public:
    explicit FakeTimer(std::shared_ptr<TimerState> state) : state_(std::move(state)) {}
    ~FakeTimer() override { state_->stopped = true; }

   private:
    std::shared_ptr<TimerState> state_;
  };
  class FakeQueue final : public SerialQueue {
   public:
    explicit FakeQueue(std::shared_ptr<QueueState> state) : state_(std::move(state)) {}
    ~FakeQueue() override { state_->gone = true; }
    void async(std::function<void()> work) override {
      ++state_->accepted;
      state_->work.push_back(std::move(work));
    }

   private:
    std::shared_ptr<QueueState> state_;
  };

  Log& log_;
  std::shared_ptr<std::deque<std::function<void()>>> main_ =
      std::make_shared<std::deque<std::function<void()>>>();
};

}  // namespace vellora
