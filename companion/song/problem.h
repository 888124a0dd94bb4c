#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace vellora::companion {

enum class Severity {
  note,     // worth knowing; may well be as it should
  warning,  // a line is lost or guessed
  error     // the file is of no use
};

// "note", "warning", "error".
std::string_view nameOf(Severity severity);

// What is wrong with a file of lyrics, where, and what to do about it.
struct Problem {
  Severity severity = Severity::error;
  std::string file;
  int line = 0;  // from 1; 0 where the whole file is meant
  std::string message;
  std::string advice;  // may be empty

  // "songs/x.lrc:12: warning: message; advice", without control characters.
  std::string text() const;

  bool operator==(const Problem&) const = default;
};

// The problems of one file. A file that is wrong throughout is told as such after the first
// hundred, so that no file makes the list grow without end.
class Problems {
 public:
  static constexpr std::size_t most = 100;

  explicit Problems(std::string_view file) : file_(file) {}

  void note(int line, std::string message, std::string advice = {});
  void warn(int line, std::string message, std::string advice = {});
  void fail(int line, std::string message, std::string advice = {});

  // In the order of their lines.
  std::vector<Problem> take() &&;

 private:
  void add(Severity severity, int line, std::string message, std::string advice);

  std::string file_;
  std::vector<Problem> list_;
};

// Whether one of them is an error.
bool anyError(const std::vector<Problem>& problems);

}  // namespace vellora::companion
