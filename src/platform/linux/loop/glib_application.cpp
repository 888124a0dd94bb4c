#include "platform/linux/loop/glib_application.h"

#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <optional>
#include <utility>

#include <glib-unix.h>

#include "platform/linux/glib/bus_watch.h"
#include "platform/linux/glib/event_source.h"
#include "platform/linux/open/running_mark.h"

namespace vellora {
namespace {

class TimeoutTimer : public Timer {
 public:
  TimeoutTimer(guint milliseconds, std::function<void()> fire)
      : source_(attachSource(g_timeout_source_new(milliseconds), std::move(fire))) {}

 private:
  GSourcePtr source_;
};

guint wholeMilliseconds(double seconds) {
  constexpr double most = 86'400'000;  // a day
  return static_cast<guint>(std::lround(std::fmin(std::fmax(seconds * 1000, 1), most)));
}

void leaveAtOnce() {
  std::cout.flush();
  std::fflush(nullptr);
  std::_Exit(EXIT_SUCCESS);
}

}  // namespace

GlibApplication::GlibApplication() : loop_(g_main_loop_new(nullptr, FALSE)) {}

GlibApplication::~GlibApplication() = default;

void GlibApplication::setDelegate(std::weak_ptr<ApplicationDelegate> delegate) {
  delegate_ = std::move(delegate);
}

void GlibApplication::run() {
  if (*terminated_) return;
  GSourcePtr launching;
  const auto launch = [this, &launching] {
    launching.reset();
    if (const auto delegate = delegate_.lock()) delegate->applicationDidFinishLaunching();
  };
  // Ahead of everything else that the loop may find to do.
  launching = attachSource(g_idle_source_new(), launch, G_PRIORITY_HIGH);
  const auto end = [this] { terminate(); };
  const auto terminating = attachSource(g_unix_signal_source_new(SIGTERM), end);
  const auto interrupting = attachSource(g_unix_signal_source_new(SIGINT), end);
  boundedEnd_.emplace();
  std::optional<OpenedUrls> openedUrls;
  const auto open = [this](const std::vector<std::string>& urls) {
    const auto delegate = delegate_.lock();
    if (delegate && !*terminated_) delegate->applicationOpen(urls);
  };
  const RunningMark mark;
  const BusWatch watch(
      [&](const SessionBus& bus) { openedUrls.emplace(shareObject(bus.get()), open); },
      [&] { openedUrls.reset(); });
  g_main_loop_run(loop_.get());
  if (backgroundIsWorking()) leaveAtOnce();
}

std::unique_ptr<Timer> GlibApplication::scheduleTimer(double interval, std::function<void()> fire) {
  return std::make_unique<TimeoutTimer>(wholeMilliseconds(interval),
                                        [ended = terminated_, fire = std::move(fire)] {
                                          if (!*ended) fire();
                                        });
}

std::unique_ptr<SerialQueue> GlibApplication::makeSerialQueue(std::string_view label) {
  auto queue = std::make_unique<BackgroundQueue>(label);
  std::erase_if(queues_, [](const auto& state) { return state.expired(); });
  queues_.push_back(queue->state());
  return queue;
}

std::function<void(std::function<void()> work)> GlibApplication::mainHandOff() {
  return mainQueue_.handOff();
}

void GlibApplication::terminate() {
  *terminated_ = true;
  mainQueue_.close();
  g_main_loop_quit(loop_.get());
}

bool GlibApplication::backgroundIsWorking() const {
  return std::ranges::any_of(queues_, &BackgroundQueue::isWorking);
}

}  // namespace vellora
