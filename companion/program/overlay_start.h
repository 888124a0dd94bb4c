#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

#include "companion/exchange/folder.h"

namespace vellora::companion {

// A program that was started. What is started outlives this value unless it is stopped.
class StartedProgram {
 public:
  // Looks in `beside` first, where that is not empty, then in PATH; a name with a slash is a path.
  // Standard input, output and error go to /dev/null; the program leads a process group of its own,
  // so that a terminal's keys do not reach it. Nothing where it cannot be started.
  static std::optional<StartedProgram> start(const std::vector<std::string>& arguments,
                                             const std::filesystem::path& beside);

  // The exit status once it has ended (128 and the signal's number for a signal).
  std::optional<int> exitStatus();
  // Asks it to end.
  void stop();

 private:
  explicit StartedProgram(pid_t id) : id_(id) {}
  pid_t id_;
  std::optional<int> status_;
};

// Has an overlay follow an exchange folder: hands the folder's URL to the system's way of opening
// one, which reaches an overlay that runs, or starts one; where that is not to be had, starts the
// overlay with the snapshot's path. Main thread.
class OverlayStart {
 public:
  // `program`: the overlay's program where the user names one, which is then started at once;
  // `beside`: the folder of this program, where the others are looked for first.
  OverlayStart(const ExchangeFolder& folder, std::string program, std::filesystem::path beside);

  // To be called from time to time.
  void step();
  // What has come of it so far, for people.
  const std::string& report() const { return report_; }
  // Ends the overlay where this started it itself.
  void end();

 private:
  void startDirectly();

  std::string snapshot_;
  std::string program_;
  std::filesystem::path beside_;
  std::optional<StartedProgram> opener_;
  std::optional<StartedProgram> overlay_;
  std::string report_;
};

}  // namespace vellora::companion
