#pragma once

#include <csignal>

#include <sys/resource.h>

namespace vellora {

// Lets files grow to `bytes` only, and writes beyond that fail instead of ending the process.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) {
    handler = ::signal(SIGXFSZ, SIG_IGN);
    ::getrlimit(RLIMIT_FSIZE, &before);
    const rlimit limit{bytes, before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &limit);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;
  ~FileSizeLimit() {
    ::setrlimit(RLIMIT_FSIZE, &before);
    ::signal(SIGXFSZ, handler);
  }

 private:
  rlimit before{};
  void (*handler)(int);
};

}  // namespace vellora
