#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "platform/application.h"
#include "platform/linux/glib/glib_ptr.h"
#include "platform/linux/loop/background_queue.h"
#include "platform/linux/loop/bounded_end.h"
#include "platform/linux/loop/main_queue.h"
#include "platform/linux/loop/opened_urls.h"

namespace vellora {

// The application on GLib's default main context, which other parts of the backend feed with
// sources of their own. Needs neither a display nor a bus. Main thread.
class GlibApplication : public Application {
 public:
  GlibApplication();
  ~GlibApplication() override;
  GlibApplication(const GlibApplication&) = delete;
  GlibApplication& operator=(const GlibApplication&) = delete;

  // Nothing to do: a program without windows of its own has no place in an X11 panel or task list.
  void setAccessoryPolicy() override {}

  void setDelegate(std::weak_ptr<ApplicationDelegate> delegate) override;

  // SIGTERM and SIGINT count as `terminate`; from then on the process has two seconds to end. Takes
  // opened URLs while it runs. When the program is ended while a serial queue is in the middle of a
  // piece of work, this does not return: standard output is flushed and the process leaves with
  // status 0 at once, because that piece would run on while the process is torn down under it.
  void run() override;

  // Whole milliseconds, at least one; the next firing is reckoned from the last.
  std::unique_ptr<Timer> scheduleTimer(double interval, std::function<void()> fire) override;

  std::unique_ptr<SerialQueue> makeSerialQueue(std::string_view label) override;
  std::function<void(std::function<void()> work)> mainHandOff() override;

  // From here on no timer fires, no hand-off runs and no URL is delivered, whatever the event loop
  // still finds to do. Before `run`, makes that return without launching.
  void terminate() override;

 private:
  bool backgroundIsWorking() const;

  GMainLoopPtr loop_;
  std::optional<BoundedEnd> boundedEnd_;  // until everything else of the program is gone
  MainQueue mainQueue_;
  std::weak_ptr<ApplicationDelegate> delegate_;
  std::vector<std::weak_ptr<const BackgroundQueue::State>> queues_;
  std::shared_ptr<bool> terminated_ = std::make_shared<bool>(false);
};

}  // namespace vellora
