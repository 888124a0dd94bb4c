#pragma once

#include <deque>
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
// one, which reaches an overlay that runs (and on macOS starts one); where that is not to be had,
// starts the overlay with the snapshot's path. An overlay that ended without having been asked to
// is had again in the same way, `mostStarts` times in `startsSpan` seconds at most. Main thread.
class OverlayStart {
 public:
  static constexpr std::size_t mostStarts = 5;
  static constexpr double startsSpan = 300;

  // `program`: the overlay's program where the user names one, which is then started at once;
  // `beside`: the folder of this program, where the others are looked for first.
  OverlayStart(ExchangeFolder folder, std::string program, std::filesystem::path beside);

  // To be called from time to time, beginning at once, each time after the folder's request was
  // renewed: an overlay that is there then takes back that it has stopped. `now` in seconds since
  // 1970.
  void step(double now);
  // What has come of it so far, for people.
  const std::string& report() const { return report_; }
  // Whether the overlay has ended because its display is gone.
  bool displayIsGone() const { return displayGone_; }
  // Ends the overlay where this started it itself.
  void end();

 private:
  void start(double now);
  void startDirectly();
  void openerEnded(int status);
  void overlayEnded(int status, double now);
  bool saysStopped();

  ExchangeFolder folder_;
  std::string program_;
  std::filesystem::path beside_;
  std::optional<StartedProgram> opener_;
  std::optional<StartedProgram> overlay_;
  std::string report_;
  std::deque<double> starts_;           // when, within the span
  bool started_ = false;                // the first of them was
  bool pointed_ = false;                // an overlay of somebody else's was given the folder
  std::optional<double> stoppedSince_;  // it says that it has stopped
  bool displayGone_ = false;
};

}  // namespace vellora::companion
