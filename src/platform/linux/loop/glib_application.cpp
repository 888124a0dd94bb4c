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

namespace vellora {
namespace {

GSourcePtr attach(GSource* source, int priority, GSourceFunc function, gpointer data,
                  GDestroyNotify destroy = nullptr) {
  g_source_set_priority(source, priority);
  g_source_set_callback(source, function, data, destroy);
  g_source_attach(source, nullptr);
  return GSourcePtr(source);
}

class TimeoutTimer : public Timer {
 public:
  // The source owns the function, so that a firing may destroy its own timer.
  TimeoutTimer(guint milliseconds, std::function<void()> fire)
      : source_(attach(
            g_timeout_source_new(milliseconds), G_PRIORITY_DEFAULT,
            [](gpointer function) noexcept -> gboolean {
              (*static_cast<std::function<void()>*>(function))();
              return G_SOURCE_CONTINUE;
            },
            new std::function<void()>(std::move(fire)),
            [](gpointer function) { delete static_cast<std::function<void()>*>(function); })) {}

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
  // Ahead of everything else that the loop may find to do.
  const auto launching =
      attach(g_idle_source_new(), G_PRIORITY_HIGH, &GlibApplication::launch, this);
  const auto terminating = attach(g_unix_signal_source_new(SIGTERM), G_PRIORITY_DEFAULT,
                                  &GlibApplication::signalled, this);
  const auto interrupting = attach(g_unix_signal_source_new(SIGINT), G_PRIORITY_DEFAULT,
                                   &GlibApplication::signalled, this);
  std::optional<OpenedUrls> openedUrls;
  if (auto bus = connectToSessionBus()) {
    openedUrls.emplace(std::move(bus), [this](const std::vector<std::string>& urls) {
      const auto delegate = delegate_.lock();
      if (delegate && !*terminated_) delegate->applicationOpen(urls);
    });
  }
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

gboolean GlibApplication::launch(gpointer self) noexcept {
  const auto delegate = static_cast<GlibApplication*>(self)->delegate_.lock();
  if (delegate) delegate->applicationDidFinishLaunching();
  return G_SOURCE_REMOVE;
}

gboolean GlibApplication::signalled(gpointer self) noexcept {
  static_cast<GlibApplication*>(self)->terminate();
  return G_SOURCE_CONTINUE;
}

bool GlibApplication::backgroundIsWorking() const {
  return std::ranges::any_of(queues_, &BackgroundQueue::isWorking);
}

}  // namespace vellora
