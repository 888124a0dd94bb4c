#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vellora {

// What the application tells its delegate. Main thread.
class ApplicationDelegate {
 public:
  virtual ~ApplicationDelegate() = default;

  // The event loop runs; called once.
  virtual void applicationDidFinishLaunching() = 0;

  // The desktop asks the running program to open these URLs, unchanged as they were given.
  virtual void applicationOpen(const std::vector<std::string>& urls) = 0;
};

// A repeating timer on the main thread's event loop; destroying it stops it.
class Timer {
 public:
  virtual ~Timer() = default;
};

// Runs work one piece at a time, in order, on one background thread. Destroying the queue does not
// wait: the piece in progress is finished on its own time, later ones are dropped.
class SerialQueue {
 public:
  virtual ~SerialQueue() = default;

  // Main thread; returns at once.
  virtual void async(std::function<void()> work) = 0;
};

// The process as a desktop program. Main thread, but for `asyncOnMain`.
class Application {
 public:
  virtual ~Application() = default;

  // No Dock icon, no menu bar of its own.
  virtual void setAccessoryPolicy() = 0;

  // The delegate is held weakly.
  virtual void setDelegate(std::weak_ptr<ApplicationDelegate> delegate) = 0;

  // Runs the event loop until `terminate`.
  virtual void run() = 0;

  // Calls `fire` every `interval` seconds; late firings are not made up for.
  virtual std::unique_ptr<Timer> scheduleTimer(double interval, std::function<void()> fire) = 0;

  // `label` names the queue's thread.
  virtual std::unique_ptr<SerialQueue> makeSerialQueue(std::string_view label) = 0;

  // The hand-off: runs `work` on the main thread's event loop, later than this call. Any thread;
  // the function returned may be kept and called after the Application is gone, then it does
  // nothing.
  virtual std::function<void(std::function<void()> work)> mainHandOff() = 0;

  // Ends the program with exit status 0, now or as soon as the event loop has the word. Does not
  // wait for background work.
  virtual void terminate() = 0;
};

}  // namespace vellora
