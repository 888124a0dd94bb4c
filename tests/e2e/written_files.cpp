#include "e2e/written_files.h"

#include <array>
#include <cstring>
#include <stdexcept>
#include <utility>

#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

namespace vellora::e2e {

WrittenFiles::WrittenFiles(std::filesystem::path kept)
    : kept_(std::move(kept)), descriptor_(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
  if (descriptor_ < 0) throw std::runtime_error("no inotify instance is left for this user");
}

WrittenFiles::~WrittenFiles() { close(descriptor_); }

void WrittenFiles::watch(const std::filesystem::path& folder) {
  const int watched = inotify_add_watch(descriptor_, folder.c_str(), IN_MOVED_TO);
  if (watched < 0) throw std::runtime_error("cannot watch " + folder.string());
  folders_[watched] = folder;
}

void WrittenFiles::wait(int milliseconds) {
  pollfd readable{descriptor_, POLLIN, 0};
  if (poll(&readable, 1, milliseconds) <= 0) return;
  alignas(inotify_event) std::array<char, 16384> buffer;
  for (ssize_t length; (length = read(descriptor_, buffer.data(), buffer.size())) > 0;) {
    for (const char* at = buffer.data(); at < buffer.data() + length;) {
      inotify_event event;
      std::memcpy(&event, at, sizeof(event));
      if (event.len > 0) keep(folders_[event.wd], at + sizeof(event));
      at += sizeof(event) + event.len;
    }
  }
}

void WrittenFiles::keep(const std::filesystem::path& folder, const std::string& name) {
  const std::filesystem::path place = kept_ / std::to_string(total_);
  std::filesystem::create_directories(place);
  std::error_code gone;  // a command is removed soon after it was written
  if (!std::filesystem::copy_file(folder / name, place / name, gone)) return;
  ++counts_[name];
  ++total_;
}

std::size_t WrittenFiles::count(const std::string& name) const {
  const auto found = counts_.find(name);
  return found == counts_.end() ? 0 : found->second;
}

}  // namespace vellora::e2e
