#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

#include <sys/types.h>

namespace vellora::companion {

// A program that gets lines on its standard input and writes lines to its standard output. It leads
// a process group of its own, which is killed when this value goes. Its input is a file that holds
// all lines, so that nobody waits for it to read them. Main thread; nothing here waits.
class LineProgram {
 public:
  // What the program may write before it is held to be mad, in bytes; of its standard error only
  // the last line is kept.
  static constexpr std::size_t mostOutput = std::size_t{4} * 1024 * 1024;
  static constexpr std::size_t mostError = 200;

  enum class End {
    running,
    well,    // it ended with the status 0
    failed,  // with another status, or by a signal
    tooMuch  // it wrote more than `mostOutput`, and was killed
  };

  // `words`: the program, looked for in PATH where its name has no slash, and its arguments.
  // `environment`: "NAME=value" for the program, beside this one's own. Null where it cannot be
  // started, with the reason in `failure`.
  static std::unique_ptr<LineProgram> start(std::vector<std::string> words,
                                            const std::vector<std::string>& environment,
                                            const std::vector<std::string>& lines,
                                            std::error_code& failure);

  ~LineProgram();
  LineProgram(const LineProgram&) = delete;
  LineProgram& operator=(const LineProgram&) = delete;

  // The lines that have come since, as they are; takes in a bounded piece each time. To be called
  // until `end` is no longer `running`. What no line feed ended comes with the end.
  std::vector<std::string> step();
  End end() const { return end_; }
  // Why it failed, for people: "exit status 3: no such language".
  std::string reason() const;

 private:
  LineProgram(pid_t id, int output, int error) : id_(id), output_(output), error_(error) {}

  bool readOutput();
  void readError();
  void lookForEnd(bool outputClosed);
  void kill();

  pid_t id_;
  int output_;
  int error_;
  End end_ = End::running;
  int status_ = 0;          // as waitpid gives it
  int stepsSinceExit_ = 0;  // while something else holds its output open
  std::string pending_;     // of a line whose end has not come
  std::size_t total_ = 0;
  std::string said_;  // on standard error
};

}  // namespace vellora::companion
