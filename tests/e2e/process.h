#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace vellora::e2e {

// A program that a test has started. Stopped by its process id when the value goes.
class Process {
 public:
  // Starts arguments[0] with the test's environment and `environment` on top; standard output and
  // standard error go to the file `log`. Throws std::runtime_error when it cannot be started.
  Process(std::vector<std::string> arguments, const std::string& log,
          const std::map<std::string, std::string>& environment = {});
  Process(Process&& other) noexcept;
  Process& operator=(Process&& other) noexcept;
  ~Process();

  pid_t pid() const { return id_; }
  bool running();
  // The exit status once it has ended by itself (128 + the signal's number for a signal).
  std::optional<int> exitStatus();
  void signal(int number) const;
  // SIGTERM, then SIGKILL after five seconds; waits for the end.
  void stop();
  // User and system time so far, in seconds.
  double processorTime() const;
  // Resident memory in KiB.
  long residentKilobytes() const;

 private:
  void reap(bool wait);
  pid_t id_ = -1;
  std::optional<int> status_;
};

// Runs a program to its end, ten seconds at most, and gives its standard output.
std::string outputOf(const std::vector<std::string>& arguments);

}  // namespace vellora::e2e
