#pragma once

#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/temporary_folder.h"

namespace vellora {

// A run of the program with nothing in its environment, no display, no bus, no home, but the
// variable ("NAME=value") that is given, and what a sanitizer's build is told about leaks and
// races.
class Program {
 public:
  enum class Streams { standard, none };
  explicit Program(std::vector<std::string> arguments, std::string variable = {},
                   Streams streams = Streams::standard) {
    arguments.insert(arguments.begin(), VELLORA_PROGRAM);
    std::vector<char*> argv;
    for (std::string& argument : arguments) argv.push_back(argument.data());
    argv.push_back(nullptr);
    std::vector<std::string> variables;
    for (const char* name : {"LSAN_OPTIONS", "TSAN_OPTIONS"}) {
      if (const char* const value = std::getenv(name)) {
        variables.push_back(std::string(name) + "=" + value);
      }
    }
    if (!variable.empty()) variables.push_back(variable);
    std::vector<char*> environment;
    for (std::string& each : variables) environment.push_back(each.data());
    environment.push_back(nullptr);

    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    if (streams == Streams::none) {
      for (int stream = 0; stream <= STDERR_FILENO; ++stream) {
        posix_spawn_file_actions_addclose(&files, stream);
      }
    } else {
      redirect(files, STDOUT_FILENO, folder_ / "output");
      redirect(files, STDERR_FILENO, folder_ / "errors");
    }
    const int failure =
        posix_spawn(&pid_, VELLORA_PROGRAM, &files, nullptr, argv.data(), environment.data());
    posix_spawn_file_actions_destroy(&files);
    if (failure != 0) throw std::runtime_error("cannot start the program");
  }
  ~Program() {
    if (pid_ < 0) return;
    kill(pid_, SIGKILL);
    wait();
  }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  // Waits for the end; the status as waitpid gives it.
  int wait() {
    int status = 0;
    while (waitpid(pid_, &status, 0) < 0 && errno == EINTR) continue;
    pid_ = -1;
    return status;
  }
  void terminate() const { kill(pid_, SIGTERM); }
  bool running() const {
    siginfo_t ended{};
    return waitid(P_PID, static_cast<id_t>(pid_), &ended, WEXITED | WNOHANG | WNOWAIT) == 0 &&
           ended.si_pid == 0;
  }

  // What a descriptor of the program stands for.
  std::filesystem::path descriptor(int number) const {
    std::error_code error;
    return std::filesystem::read_symlink(
        "/proc/" + std::to_string(pid_) + "/fd/" + std::to_string(number), error);
  }

  // What it has printed so far.
  std::string output() const { return readText(folder_ / "output"); }
  std::string errors() const { return readText(folder_ / "errors"); }

 private:
  static void redirect(posix_spawn_file_actions_t& files, int descriptor,
                       const std::filesystem::path& path) {
    posix_spawn_file_actions_addopen(&files, descriptor, path.c_str(), O_WRONLY | O_CREAT | O_TRUNC,
                                     0600);
  }

  TemporaryFolder folder_;
  pid_t pid_ = -1;
};

}  // namespace vellora
