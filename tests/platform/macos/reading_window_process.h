#pragma once

#include <string>

#include <sys/types.h>

#include "music/music_layout.h"

namespace vellora {

// The window program of reading_window.mm, in a process of its own.
class ReadingWindowProcess {
 public:
  // Starts it and waits until its window is there; throws when that takes more than 20 seconds.
  ReadingWindowProcess();
  ~ReadingWindowProcess();
  ReadingWindowProcess(const ReadingWindowProcess&) = delete;
  ReadingWindowProcess& operator=(const ReadingWindowProcess&) = delete;

  pid_t pid() const { return pid_; }
  // What a reading of the window must give, by the window's own account.
  const MusicLayout& expected() const { return expected_; }

 private:
  std::string output();

  MusicLayout expected_;
  pid_t pid_ = -1;
  int input_ = -1;   // the program's; closing it ends the program
  int output_ = -1;  // what it prints
};

}  // namespace vellora
