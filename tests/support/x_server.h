#pragma once

#include <functional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace vellora {

// A program started by a test, in the test's environment with DISPLAY set. Stopped by its process
// id.
class ChildProgram {
 public:
  ChildProgram(std::vector<std::string> arguments, const std::string& display);
  ~ChildProgram();
  ChildProgram(const ChildProgram&) = delete;
  ChildProgram& operator=(const ChildProgram&) = delete;

  pid_t pid() const { return pid_; }
  // Sends the signal and waits for the end.
  void end(int signal);
  // Waits for the program to end by itself; its exit status.
  int wait();

 private:
  pid_t pid_ = -1;
};

// A virtual X server of its own for one test: one screen, 1280 × 800, 24 bits, no window manager.
class XServer {
 public:
  XServer();
  ~XServer();
  XServer(const XServer&) = delete;
  XServer& operator=(const XServer&) = delete;

  // Such as ":7".
  const std::string& display() const { return display_; }
  pid_t pid() const { return pid_; }
  // Sends the signal and waits for the end.
  void end(int signal);

 private:
  pid_t pid_ = -1;
  std::string display_;
};

// Runs GLib's default main context until `condition` holds; false when it does not within ten
// seconds.
bool runLoopUntil(const std::function<bool()>& condition);

// Runs the main context until it has nothing to do.
void runLoopDry();

}  // namespace vellora
