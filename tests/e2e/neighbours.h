#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <stdexcept>
#include <string>

#include <sys/types.h>

namespace vellora::e2e {

// The process of a piece of the session by its name in scripts/session ("xvfb", "dbus", "openbox",
// …). Throws std::runtime_error where it has none of that name: a signal to 0 would reach the test
// and everything beside it.
inline pid_t sessionPiece(const std::string& name) {
  std::ifstream pieces(std::getenv("VELLORA_SESSION_PIDS"));
  std::string piece;
  for (pid_t id = 0; pieces >> piece >> id;) {
    if (piece == name) return id;
  }
  throw std::runtime_error("the session has no " + name);
}

// Beside whom a program sees another wall clock than this one: the steady clocks go on. Preloads
// libfaketime.
class OtherClock {
 public:
  explicit OtherClock(const std::filesystem::path& folder) : file_(folder / "clock") { set(0); }

  // The environment of the programs that see this clock.
  std::map<std::string, std::string> environment() const {
    return {{"LD_PRELOAD", VELLORA_FAKETIME},
            {"FAKETIME_TIMESTAMP_FILE", file_},
            {"FAKETIME_NO_CACHE", "1"},
            {"FAKETIME_DONT_FAKE_MONOTONIC", "1"}};
  }
  // Seconds that it is ahead of the true one, from now on.
  void set(int seconds) const {
    const auto next = file_.string() + ".next";
    std::ofstream(next) << (seconds < 0 ? "" : "+") << seconds << "s\n";
    std::filesystem::rename(next, file_);
  }

 private:
  std::filesystem::path file_;
};

}  // namespace vellora::e2e
