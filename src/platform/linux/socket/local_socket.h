#pragma once

#include <cstdint>
#include <string>
#include <utility>

namespace vellora {

// A stream socket of this machine's own (unix(7)), which never waits; closed with its owner. One
// thread at a time.
class LocalSocket {
 public:
  LocalSocket();
  ~LocalSocket();
  LocalSocket(const LocalSocket&) = delete;
  LocalSocket& operator=(const LocalSocket&) = delete;

  // -1 where the system gave none.
  int fd() const { return fd_; }
  // It is closed by the caller from here on.
  int release() { return std::exchange(fd_, -1); }

  // To the socket with that path or, behind a zero byte, that abstract name. False with `errno` as
  // connect(2) has it; EAGAIN: too many wait there to be taken in already.
  bool connectTo(const std::string& name) const;

  // Whether that process listens at the other end.
  bool isOf(std::int32_t processIdentifier) const;

 private:
  int fd_;
};

// A connection to that path, which the caller closes; -1 where nobody takes connections there now.
// Any thread.
int connectToLocalSocket(const std::string& path);

}  // namespace vellora
