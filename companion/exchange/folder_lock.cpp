#include "companion/exchange/folder_lock.h"

#include <array>
#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vellora::companion {
namespace {

constexpr const char* lockFileName = "companion.lock";

std::string lastError() { return std::generic_category().message(errno); }

// Those of the number that the file begins with.
std::string digitsIn(int file) {
  std::array<char, 16> bytes{};
  const ssize_t count = pread(file, bytes.data(), bytes.size(), 0);
  std::string digits;
  for (ssize_t i = 0; i < count; ++i) {
    const char c = bytes[static_cast<std::size_t>(i)];
    if (c < '0' || c > '9') break;
    digits += c;
  }
  return digits;
}

bool isRegular(int file) {
  struct stat status {};
  return fstat(file, &status) == 0 && S_ISREG(status.st_mode);
}

}  // namespace

FolderLock::FolderLock(const std::filesystem::path& folder) {
  const std::filesystem::path path = folder / lockFileName;
  // Without waiting, whatever somebody has put there.
  file_ = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600);
  if (file_ < 0 || !isRegular(file_)) {
    reason_ = path.string() + (file_ < 0 ? ": " + lastError() : " is no file");
    return;
  }
  if (flock(file_, LOCK_EX | LOCK_NB) == 0) {
    state_ = State::held;
    const std::string id = std::to_string(getpid()) + "\n";
    // Where the number cannot be written, the lock holds all the same.
    if (ftruncate(file_, 0) == 0 && pwrite(file_, id.data(), id.size(), 0) < 0) return;
  } else if (errno == EWOULDBLOCK) {
    state_ = State::anothers;
    const std::string id = digitsIn(file_);
    reason_ = id.empty() ? "a process that does not say its number" : "process " + id;
  } else {
    reason_ = path.string() + " cannot be locked: " + lastError();
  }
}

FolderLock::~FolderLock() {
  if (file_ >= 0) close(file_);
}

}  // namespace vellora::companion
