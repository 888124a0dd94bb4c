#include "companion/program/overlay_start.h"

#include <csignal>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include "companion/process/spawn.h"

namespace vellora::companion {
namespace {

constexpr const char* overlayName = "vellora";
constexpr int displayGoneStatus = 3;   // vellora(1), EXIT STATUS
constexpr double stoppedPatience = 3;  // seconds for an overlay that starts to say otherwise

std::string placeOf(const std::string& name, const std::filesystem::path& beside) {
  if (beside.empty() || name.find('/') != std::string::npos) return name;
  const std::filesystem::path path = beside / name;
  return access(path.c_str(), X_OK) == 0 ? path.string() : name;
}

}  // namespace

std::optional<StartedProgram> StartedProgram::start(const std::vector<std::string>& arguments,
                                                    const std::filesystem::path& beside) {
  std::vector<std::string> words = arguments;
  words[0] = placeOf(words[0], beside);
  const int nothing = open("/dev/null", O_RDWR | O_CLOEXEC);
  pid_t id = -1;
  const std::error_code failure = spawn(std::move(words), {}, {nothing, nothing, nothing}, id);
  if (nothing >= 0) close(nothing);
  return failure ? std::nullopt : std::optional(StartedProgram(id));
}

std::optional<int> StartedProgram::exitStatus() {
  int waited = 0;
  if (!status_ && waitpid(id_, &waited, WNOHANG) == id_) {
    status_ = WIFEXITED(waited) ? WEXITSTATUS(waited) : 128 + WTERMSIG(waited);
  }
  return status_;
}

void StartedProgram::stop() {
  if (!exitStatus()) kill(id_, SIGTERM);
}

OverlayStart::OverlayStart(ExchangeFolder folder, std::string program, std::filesystem::path beside)
    : folder_(std::move(folder)), program_(std::move(program)), beside_(std::move(beside)) {}

void OverlayStart::start(double now) {
  std::erase_if(starts_, [now](double then) { return then > now || now - then > startsSpan; });
  if (starts_.size() == mostStarts) {
    report_ += " too often to be started again";
    return;
  }
  starts_.push_back(now);
  if (program_.empty()) {
    opener_ = StartedProgram::start({VELLORA_URL_OPENER, folder_.url()}, beside_);
  }
  if (!opener_) startDirectly();
}

void OverlayStart::startDirectly() {
  const std::string name = program_.empty() ? overlayName : program_;
  overlay_ = StartedProgram::start({name, "--snapshot", folder_.snapshotPath().string()}, beside_);
  report_ = overlay_ ? "the overlay was started"
                     : "the overlay cannot be started: is " + name + " installed?";
}

void OverlayStart::step(double now) {
  if (!std::exchange(started_, true)) return start(now);
  if (opener_) {
    if (const auto status = opener_->exitStatus()) openerEnded(*status);
  } else if (overlay_) {
    if (const auto status = overlay_->exitStatus()) overlayEnded(*status, now);
  } else if (pointed_ && saysStopped()) {
    if (!stoppedSince_ || *stoppedSince_ > now) stoppedSince_ = now;
    if (now - *stoppedSince_ < stoppedPatience) return;
    stoppedSince_.reset();
    pointed_ = false;
    report_ = "the overlay has ended";
    start(now);
  } else {
    stoppedSince_.reset();
  }
}

void OverlayStart::openerEnded(int status) {
  opener_.reset();
  pointed_ = status == 0;
  if (pointed_) {
    report_ = "the overlay was started or pointed at this folder";
  } else {
    startDirectly();
  }
}

// One that ends by its own rule, as it does when it wakes from a suspend before this program, says
// so in its status. One that a user asked to end, by a signal, does not.
void OverlayStart::overlayEnded(int status, double now) {
  overlay_.reset();
  // What one that a signal ended said last.
  if (!saysStopped()) folder_.withdrawStatus();
  report_ = "the overlay has ended (exit status " + std::to_string(status) + ")";
  displayGone_ = status == displayGoneStatus;
  const bool asked =
      status == 0 ? !saysStopped()
                  : status == 128 + SIGTERM || status == 128 + SIGINT || status == 128 + SIGHUP;
  if (!displayGone_ && !asked) start(now);
}

bool OverlayStart::saysStopped() {
  const auto status = folder_.status();
  return status && status->stopped;
}

void OverlayStart::end() {
  if (overlay_) overlay_->stop();
}

}  // namespace vellora::companion
