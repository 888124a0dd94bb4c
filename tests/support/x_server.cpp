#include "support/x_server.h"

#include <array>
#include <chrono>
#include <memory>
#include <stdexcept>

#include <fcntl.h>
#include <glib.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vellora {
namespace {

std::vector<char*> argumentPointers(std::vector<std::string>& arguments) {
  std::vector<char*> pointers;
  for (std::string& argument : arguments) pointers.push_back(argument.data());
  pointers.push_back(nullptr);
  return pointers;
}

// In the child only. What the programs print would drown what the tests say; and they end with a
// test that crashes.
[[noreturn]] void become(std::vector<char*>& arguments) {
  ::prctl(PR_SET_PDEATHSIG, SIGTERM);
  const int nowhere = ::open("/dev/null", O_RDWR);
  ::dup2(nowhere, 0);
  ::dup2(nowhere, 1);
  ::dup2(nowhere, 2);
  ::execvp(arguments[0], arguments.data());
  ::_exit(127);
}

int waitFor(pid_t pid) {
  int status = 0;
  while (::waitpid(pid, &status, 0) < 0 && errno == EINTR) {
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace

ChildProgram::ChildProgram(std::vector<std::string> arguments, const std::string& display) {
  auto pointers = argumentPointers(arguments);
  pid_ = ::fork();
  if (pid_ < 0) throw std::runtime_error("cannot fork");
  if (pid_ > 0) return;
  ::setenv("DISPLAY", display.c_str(), 1);
  become(pointers);
}

ChildProgram::~ChildProgram() { end(SIGTERM); }

void ChildProgram::end(int signal) {
  if (pid_ < 0) return;
  ::kill(pid_, signal);
  wait();
}

int ChildProgram::wait() {
  const int status = waitFor(pid_);
  pid_ = -1;
  return status;
}

XServer::XServer() {
  std::array<int, 2> ends{};
  if (::pipe(ends.data()) != 0) throw std::runtime_error("cannot make a pipe");
  std::vector<std::string> arguments{"Xvfb",      "-displayfd", std::to_string(ends[1]),
                                     "-screen",   "0",          "1280x800x24",
                                     "-nolisten", "tcp",        "-noreset"};
  auto pointers = argumentPointers(arguments);
  pid_ = ::fork();
  if (pid_ < 0) throw std::runtime_error("cannot fork");
  if (pid_ == 0) {
    ::close(ends[0]);
    become(pointers);
  }
  ::close(ends[1]);
  // The server writes its number and a line feed when it is ready, and ends without when it fails.
  char character = 0;
  std::string number;
  while (::read(ends[0], &character, 1) == 1 && character != '\n') number += character;
  ::close(ends[0]);
  if (number.empty()) {
    end(SIGKILL);
    throw std::runtime_error("Xvfb does not start");
  }
  display_ = ":" + number;
}

XServer::~XServer() { end(SIGTERM); }

void XServer::end(int signal) {
  if (pid_ < 0) return;
  ::kill(pid_, signal);
  ::kill(pid_, SIGCONT);
  waitFor(pid_);
  pid_ = -1;
}

bool runLoopUntil(const std::function<bool()>& condition) {
  using Clock = std::chrono::steady_clock;
  const auto deadline = Clock::now() + std::chrono::seconds(10);
  // Wakes the loop, so that a condition that nothing in it brings about is looked at too.
  const auto tick = [](gpointer) -> gboolean { return G_SOURCE_CONTINUE; };
  const guint waker = g_timeout_add(2, tick, nullptr);
  bool held = condition();
  while (!held && Clock::now() < deadline) {
    g_main_context_iteration(nullptr, TRUE);
    held = condition();
  }
  g_source_remove(waker);
  return held;
}

void runLoopDry() {
  while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
  }
}

}  // namespace vellora
