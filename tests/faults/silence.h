#pragma once

#include <cstdio>
#include <string>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vellora::faults {

// While it lives, standard error goes into a file, so that it can be asked whether anything was
// said there.
class Silence {
 public:
  Silence() : file_(std::tmpfile()), before_(::dup(STDERR_FILENO)) {
    ::dup2(::fileno(file_), STDERR_FILENO);
  }
  ~Silence() {
    ::dup2(before_, STDERR_FILENO);
    ::close(before_);
    std::fclose(file_);
  }
  Silence(const Silence&) = delete;
  Silence& operator=(const Silence&) = delete;

  // What was said; empty where nothing was.
  std::string broken() const {
    struct stat status {};
    if (::fstat(::fileno(file_), &status) != 0) return "standard error is lost";
    std::string said(static_cast<std::size_t>(status.st_size), '\0');
    const ssize_t count = ::pread(::fileno(file_), said.data(), said.size(), 0);
    said.resize(count < 0 ? 0 : static_cast<std::size_t>(count));
    return said;
  }

 private:
  std::FILE* file_;
  int before_;
};

}  // namespace vellora::faults
