#include "platform/folder_watch.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <utility>

#include <sys/inotify.h>
#include <unistd.h>

namespace vellora {
namespace {

constexpr std::uint32_t changes = IN_MOVED_TO | IN_DELETE;
constexpr std::uint32_t folderGone = IN_MOVE_SELF | IN_DELETE_SELF | IN_IGNORED | IN_UNMOUNT;

// inotify(7).
class Inotify final : public FolderWatch {
 public:
  Inotify(int descriptor, std::vector<std::string_view> names)
      : descriptor_(descriptor), names_(std::move(names)) {}
  ~Inotify() override { close(descriptor_); }
  Inotify(const Inotify&) = delete;
  Inotify& operator=(const Inotify&) = delete;

  int descriptor() const override { return descriptor_; }
  bool watches() const override { return watches_; }

  bool take() override {
    alignas(inotify_event) std::array<char, 4096> buffer{};
    bool any = false;
    for (;;) {
      const ssize_t count = read(descriptor_, buffer.data(), buffer.size());
      if (count <= 0) return any;
      const char* at = buffer.data();
      for (const char* const end = at + count; at < end;) {
        inotify_event event{};
        std::memcpy(&event, at, sizeof event);
        any = isOfUse(event, at + sizeof event) || any;
        at += sizeof event + event.len;
      }
    }
  }

 private:
  bool isOfUse(const inotify_event& event, const char* name) {
    if ((event.mask & folderGone) != 0) watches_ = false;
    if ((event.mask & (folderGone | IN_Q_OVERFLOW)) != 0) return true;
    return event.len > 0 && std::ranges::find(names_, std::string_view(name)) != names_.end();
  }

  int descriptor_;
  std::vector<std::string_view> names_;
  bool watches_ = true;
};

}  // namespace

std::unique_ptr<FolderWatch> makeFolderWatch(const std::filesystem::path& folder,
                                             std::vector<std::string_view> names) {
  const int descriptor = inotify_init1(IN_CLOEXEC | IN_NONBLOCK);
  if (descriptor < 0) return nullptr;
  auto watch = std::make_unique<Inotify>(descriptor, std::move(names));
  const std::uint32_t events = changes | IN_MOVE_SELF | IN_DELETE_SELF | IN_ONLYDIR;
  if (inotify_add_watch(descriptor, folder.c_str(), events) < 0) return nullptr;
  return watch;
}

}  // namespace vellora
