#include "base/files.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <cstddef>
#include <cstdio>
#include <string>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/process.h"

namespace vellora {

namespace {

// An open file; closes itself.
class OpenFile {
 public:
  explicit OpenFile(int descriptor) : descriptor_(descriptor) {}
  OpenFile(OpenFile&& other) noexcept : descriptor_(std::exchange(other.descriptor_, -1)) {}
  OpenFile& operator=(OpenFile&&) = delete;
  ~OpenFile() { close(); }

  explicit operator bool() const { return descriptor_ >= 0; }
  int get() const { return descriptor_; }

  // Some file systems tell only here that the data did not arrive. Never tried again: the
  // descriptor is gone after an interruption too.
  bool close() {
    const int closing = std::exchange(descriptor_, -1);
    return closing < 0 || ::close(closing) == 0 || errno == EINTR;
  }

 private:
  int descriptor_;
};

// A file that goes away again unless it is kept.
class TemporaryFile {
 public:
  explicit TemporaryFile(std::filesystem::path path) : path_(std::move(path)) {}
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() {
    if (!path_.empty()) ::unlink(path_.c_str());
  }

  bool renameTo(const std::filesystem::path& destination) {
    if (std::rename(path_.c_str(), destination.c_str()) != 0) return false;
    path_.clear();
    return true;
  }

 private:
  std::filesystem::path path_;
};

template <typename Call>
auto uninterrupted(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

OpenFile openFile(const std::filesystem::path& path, int flags) {
  return OpenFile(uninterrupted([&] { return ::open(path.c_str(), flags | O_CLOEXEC, 0666); }));
}

// The system ends a path at U+0000 and would then reach another file than the one that is meant.
bool isUsable(const std::filesystem::path& path) {
  return !path.empty() && path.native().find('\0') == std::string::npos;
}

bool writeAll(const OpenFile& file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count =
        uninterrupted([&] { return ::write(file.get(), bytes.data(), bytes.size()); });
    if (count <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

// Short, whatever the destination is called. Two writers that meet at one name see it by O_EXCL and
// take the next, as does one that meets what a crashed process of the same number left behind.
constexpr std::string_view temporaryPrefix = ".vellora-";

std::filesystem::path temporaryPath(const std::filesystem::path& folder, int attempt) {
  return folder / (std::string(temporaryPrefix) + std::to_string(::getpid()) + "-" +
                   std::to_string(attempt));
}

// The process that a temporary file is named after; nothing where the name is another.
std::optional<pid_t> writerOf(std::string_view name) {
  if (!name.starts_with(temporaryPrefix)) return std::nullopt;
  name.remove_prefix(temporaryPrefix.size());
  pid_t process = 0;
  const char* const end = name.data() + name.size();
  const auto number = std::from_chars(name.data(), end, process);
  if (number.ec != std::errc() || process <= 0) return std::nullopt;
  int attempt = 0;
  if (number.ptr == end || *number.ptr != '-') return std::nullopt;
  const auto rest = std::from_chars(number.ptr + 1, end, attempt);
  if (rest.ec != std::errc() || rest.ptr != end || attempt < 0) return std::nullopt;
  return process;
}

// A process of another container, which has numbers of its own, may still be writing.
bool isAMinuteOld(const std::filesystem::directory_entry& entry) {
  std::error_code error;
  const auto written = entry.last_write_time(error);
  return !error &&
         std::filesystem::file_time_type::clock::now() - written > std::chrono::minutes(1);
}

// Content as it comes, beside that of an earlier reading.
class ContentBesideKnown {
 public:
  ContentBesideKnown(std::string_view known, std::string& other) : known_(known), other_(other) {
    other_.clear();
  }

  std::size_t size() const { return size_; }

  // `expected` is the size of the whole.
  void add(std::string_view piece, std::size_t expected) {
    if (sameSoFar_ && known_.substr(size_).starts_with(piece)) {
      size_ += piece.size();
      return;
    }
    if (std::exchange(sameSoFar_, false)) {
      other_.reserve(std::max(expected, size_ + piece.size()));
      other_ = known_.substr(0, size_);
    }
    other_ += piece;
    size_ += piece.size();
  }

  FileReading end() {
    if (sameSoFar_ && size_ == known_.size()) return FileReading::asBefore;
    if (sameSoFar_) other_ = known_.substr(0, size_);
    return FileReading::other;
  }

 private:
  std::string_view known_;
  std::string& other_;
  std::size_t size_ = 0;
  bool sameSoFar_ = true;
};

}  // namespace

FileReading readWholeFileAgain(const std::filesystem::path& path, std::string_view known,
                               std::string& other) {
  ContentBesideKnown content(known, other);
  if (!isUsable(path)) return FileReading::failed;
  // Without O_NONBLOCK, opening a FIFO waits for its writer.
  const OpenFile file = openFile(path, O_RDONLY | O_NONBLOCK | O_NOCTTY);
  if (!file) return FileReading::failed;
  struct stat status {};
  if (::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return FileReading::failed;
  if (std::cmp_greater(status.st_size, largestReadableFile)) return FileReading::failed;

  const auto expected = static_cast<std::size_t>(std::max<off_t>(status.st_size, 0));
  std::array<char, 16384> buffer;
  while (true) {
    const ssize_t count =
        uninterrupted([&] { return ::read(file.get(), buffer.data(), buffer.size()); });
    if (count < 0) return FileReading::failed;
    if (count == 0) return content.end();
    const std::string_view piece(buffer.data(), static_cast<std::size_t>(count));
    // The file may have grown since its size was asked.
    if (content.size() + piece.size() > largestReadableFile) return FileReading::failed;
    content.add(piece, expected);
    // Less than was asked for, up to the size: the end was met. Where either does not hold (files
    // of /proc have no size), only a read of nothing tells.
    const bool cut = piece.size() < buffer.size();
    if (cut && content.size() == expected) return content.end();
  }
}

std::optional<std::string> readWholeFile(const std::filesystem::path& path) {
  std::string content;
  if (readWholeFileAgain(path, {}, content) == FileReading::failed) return std::nullopt;
  return content;
}

bool writeFileAtomically(const std::filesystem::path& path, std::string_view bytes,
                         Outlives outlives) {
  if (!isUsable(path) || !path.has_filename()) return false;
  const std::filesystem::path folder = path.has_parent_path() ? path.parent_path() : ".";
  for (int attempt = 0; attempt < 100; ++attempt) {
    const std::filesystem::path name = temporaryPath(folder, attempt);
    OpenFile file = openFile(name, O_WRONLY | O_CREAT | O_EXCL);
    if (!file && errno == EEXIST) continue;
    if (!file) return false;
    TemporaryFile temporary(name);
    const bool synced =
        writeAll(file, bytes) &&
        (outlives == Outlives::program || uninterrupted([&] { return ::fsync(file.get()); }) == 0);
    return synced && file.close() && temporary.renameTo(path);
  }
  return false;
}

void removeAbandonedFiles(const std::filesystem::path& folder) {
  if (!isUsable(folder)) return;
  std::error_code error;
  int looked = 0;
  for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    if (++looked > 1000) return;
    const auto writer = writerOf(entry->path().filename().native());
    if (!writer || !isProcessGone(*writer) || !isAMinuteOld(*entry)) continue;
    ::unlink(entry->path().c_str());
  }
}

std::error_code makePrivateFolder(const std::filesystem::path& path) {
  // A slash at the end does not make an empty last component.
  const std::filesystem::path folder = path.has_filename() ? path : path.parent_path();
  std::error_code error;
  if (!isUsable(folder)) return std::make_error_code(std::errc::invalid_argument);
  if (std::filesystem::is_directory(folder, error)) return {};
  if (folder.has_parent_path()) std::filesystem::create_directories(folder.parent_path(), error);
  if (::mkdir(folder.c_str(), 0700) == 0) return {};
  error = std::error_code(errno, std::generic_category());
  std::error_code ignored;
  return std::filesystem::is_directory(folder, ignored) ? std::error_code() : error;
}

bool fileExists(const std::filesystem::path& path) {
  struct stat status {};
  return isUsable(path) && ::stat(path.c_str(), &status) == 0;
}

bool removeFile(const std::filesystem::path& path) {
  return isUsable(path) && ::unlink(path.c_str()) == 0;
}

}  // namespace vellora
