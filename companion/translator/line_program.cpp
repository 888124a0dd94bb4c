#include "companion/translator/line_program.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <string_view>
#include <utility>

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "companion/process/spawn.h"
#include "companion/song/text.h"

namespace vellora::companion {
namespace {

constexpr std::size_t piece = 65536;   // bytes that a step takes in at most
constexpr int patienceAfterExit = 20;  // steps

struct CloseFile {
  void operator()(FILE* file) const { std::fclose(file); }
};
using FilePtr = std::unique_ptr<FILE, CloseFile>;

// The reading end of a pipe, which the program does not inherit, and the writing end, which it gets
// under another number.
struct Pipe {
  Pipe() {
    std::array<int, 2> ends{-1, -1};
    if (pipe(ends.data()) != 0) return;
    for (const int end : ends) fcntl(end, F_SETFD, FD_CLOEXEC);
    fcntl(ends[0], F_SETFL, O_NONBLOCK);
    reading = ends[0];
    writing = ends[1];
  }
  ~Pipe() {
    if (reading >= 0) close(reading);
    if (writing >= 0) close(writing);
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;

  int reading = -1;
  int writing = -1;
};

// All lines in a file without a name, at its beginning.
FilePtr fileOf(const std::vector<std::string>& lines) {
  FilePtr file(std::tmpfile());
  if (!file) return nullptr;
  for (const std::string& line : lines) {
    std::fwrite(line.data(), 1, line.size(), file.get());
    std::fputc('\n', file.get());
  }
  if (std::fflush(file.get()) != 0 || std::ferror(file.get()) != 0) return nullptr;
  fcntl(fileno(file.get()), F_SETFD, FD_CLOEXEC);
  return lseek(fileno(file.get()), 0, SEEK_SET) == 0 ? std::move(file) : nullptr;
}

}  // namespace

std::unique_ptr<LineProgram> LineProgram::start(std::vector<std::string> words,
                                                const std::vector<std::string>& environment,
                                                const std::vector<std::string>& lines,
                                                std::error_code& failure) {
  const FilePtr input = fileOf(lines);
  Pipe output;
  Pipe error;
  failure = {errno, std::generic_category()};
  if (!input || output.reading < 0 || error.reading < 0) return nullptr;
  pid_t id = -1;
  failure = spawn(std::move(words), environment,
                  {fileno(input.get()), output.writing, error.writing}, id);
  if (failure) return nullptr;
  return std::unique_ptr<LineProgram>(
      new LineProgram(id, std::exchange(output.reading, -1), std::exchange(error.reading, -1)));
}

LineProgram::~LineProgram() {
  kill();
  if (output_ >= 0) close(output_);
  if (error_ >= 0) close(error_);
}

// The whole group, before the number can be another's.
void LineProgram::kill() {
  if (id_ < 0) return;
  ::kill(-id_, SIGKILL);
  while (waitpid(id_, &status_, 0) < 0 && errno == EINTR) {
  }
  id_ = -1;
}

std::vector<std::string> LineProgram::step() {
  std::vector<std::string> lines;
  if (end_ != End::running) return lines;
  const bool closed = readOutput();
  readError();
  std::size_t begin = 0;
  for (std::size_t end = pending_.find('\n'); end != std::string::npos;
       end = pending_.find('\n', begin)) {
    lines.push_back(pending_.substr(begin, end - begin));
    begin = end + 1;
  }
  pending_.erase(0, begin);
  if (total_ > mostOutput) {
    kill();
    end_ = End::tooMuch;
    return lines;
  }
  lookForEnd(closed);
  if (end_ != End::running && !pending_.empty()) lines.push_back(std::exchange(pending_, {}));
  return lines;
}

// Whether nothing more can come.
bool LineProgram::readOutput() {
  std::array<char, 4096> buffer{};
  for (std::size_t taken = 0; taken < piece;) {
    const ssize_t count = read(output_, buffer.data(), buffer.size());
    if (count == 0) return true;
    if (count < 0) return errno != EAGAIN && errno != EINTR;
    pending_.append(buffer.data(), static_cast<std::size_t>(count));
    taken += static_cast<std::size_t>(count);
    total_ += static_cast<std::size_t>(count);
  }
  return false;
}

void LineProgram::readError() {
  std::array<char, 4096> buffer{};
  for (std::size_t taken = 0; taken < piece;) {
    const ssize_t count = read(error_, buffer.data(), buffer.size());
    if (count <= 0) return;
    said_.append(buffer.data(), static_cast<std::size_t>(count));
    taken += static_cast<std::size_t>(count);
    if (said_.size() > 2 * piece) said_.erase(0, said_.size() - piece);
  }
}

void LineProgram::lookForEnd(bool outputClosed) {
  siginfo_t about{};
  // It stays a zombie until its group is killed, so that the group's number stays its own.
  if (waitid(P_PID, static_cast<id_t>(id_), &about, WEXITED | WNOHANG | WNOWAIT) != 0) return;
  if (about.si_pid != id_) return;
  if (!outputClosed && ++stepsSinceExit_ < patienceAfterExit) return;
  readError();
  kill();
  end_ = WIFEXITED(status_) && WEXITSTATUS(status_) == 0 ? End::well : End::failed;
}

std::string LineProgram::reason() const {
  std::string text = WIFSIGNALED(status_) ? "signal " + std::to_string(WTERMSIG(status_))
                                          : "exit status " + std::to_string(WEXITSTATUS(status_));
  std::string last;
  forEachLine(said_, [&last](int, std::string_view line) {
    if (std::string clean = cleaned(cut(line, mostError)); !clean.empty()) last = std::move(clean);
    return true;
  });
  return last.empty() ? text : text + ": " + last;
}

}  // namespace vellora::companion
