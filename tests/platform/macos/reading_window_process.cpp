#include "reading_window_process.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <sstream>
#include <stdexcept>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace vellora {
namespace {

constexpr std::string_view readyLine = "ready\n";

std::array<int, 2> makePipe() {
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0) throw std::runtime_error("no pipe");
  for (const int end : ends) fcntl(end, F_SETFD, FD_CLOEXEC);
  return ends;
}

MusicLayout parse(const std::string& text) {
  MusicLayout layout;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    std::string what;
    Rect rect;
    words >> what >> rect.x >> rect.y >> rect.width >> rect.height;
    words.get();
    std::string rest;
    std::getline(words, rest);
    if (what == "window") {
      layout.window = rect;
      layout.title = rest;
    } else if (what == "viewport") {
      layout.viewport = rect;
    } else if (what == "row") {
      layout.rows.push_back({rest, rect});
    }
  }
  return layout;
}

}  // namespace

ReadingWindowProcess::ReadingWindowProcess() {
  const std::array<int, 2> input = makePipe();
  const std::array<int, 2> output = makePipe();
  input_ = input[1];
  output_ = output[0];
  posix_spawn_file_actions_t files;
  posix_spawn_file_actions_init(&files);
  posix_spawn_file_actions_adddup2(&files, input[0], STDIN_FILENO);
  posix_spawn_file_actions_adddup2(&files, output[1], STDOUT_FILENO);
  std::string program = VELLORA_READING_WINDOW;
  std::array<char*, 2> arguments{program.data(), nullptr};
  const int failure =
      posix_spawn(&pid_, program.c_str(), &files, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&files);
  close(input[0]);
  close(output[1]);
  if (failure != 0) throw std::runtime_error("cannot start " + program);
  expected_ = parse(this->output());
}

ReadingWindowProcess::~ReadingWindowProcess() {
  close(input_);
  close(output_);
  kill(pid_, SIGCONT);
  kill(pid_, SIGKILL);
  while (waitpid(pid_, nullptr, 0) < 0 && errno == EINTR) continue;
}

// All that it prints until it is ready.
std::string ReadingWindowProcess::output() {
  using Clock = std::chrono::steady_clock;
  const auto deadline = Clock::now() + std::chrono::seconds(20);
  std::string text;
  while (!text.ends_with(readyLine)) {
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
    pollfd waiting{output_, POLLIN, 0};
    std::array<char, 4096> buffer;
    if (left <= 0 || poll(&waiting, 1, static_cast<int>(left)) == 0) {
      throw std::runtime_error("the window did not come up; it said: " + text);
    }
    const ssize_t count = read(output_, buffer.data(), buffer.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) throw std::runtime_error("the window's program ended; it said: " + text);
    text.append(buffer.data(), static_cast<std::size_t>(count));
  }
  return text;
}

}  // namespace vellora
