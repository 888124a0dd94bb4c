#pragma once

#include <filesystem>
#include <string>

namespace vellora::companion {

// Says that this process feeds an exchange folder: a lock (flock) on the file "companion.lock" in
// it, which holds the process id. The system lets go of it when the process ends, however that
// happens; the file stays. Main thread.
class FolderLock {
 public:
  enum class State {
    held,        // by this value, as long as it lives
    anothers,    // another process, or another value, feeds the folder
    unavailable  // the folder's file system has no locks, or the file cannot be made
  };

  // `folder`: the exchange folder, which is there.
  explicit FolderLock(const std::filesystem::path& folder);
  ~FolderLock();
  FolderLock(const FolderLock&) = delete;
  FolderLock& operator=(const FolderLock&) = delete;

  State state() const { return state_; }
  // Who feeds the folder, as "process 1234", or why nobody can tell; empty where it is held.
  const std::string& reason() const { return reason_; }

 private:
  int file_ = -1;
  State state_ = State::unavailable;
  std::string reason_;
};

}  // namespace vellora::companion
