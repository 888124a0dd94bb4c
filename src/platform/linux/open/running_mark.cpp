#include "platform/linux/open/running_mark.h"

#include <string>

#include <fcntl.h>
#include <unistd.h>

#include "platform/linux/glib/glib_ptr.h"

namespace vellora {
namespace {

// One file for each bus, since a user may have several sessions.
std::string markPath() {
  const char* const folder = g_getenv("XDG_RUNTIME_DIR");
  if (folder == nullptr || *folder == '\0') return {};
  const char* const address = g_getenv("DBUS_SESSION_BUS_ADDRESS");
  const GCharPtr bus(
      g_compute_checksum_for_string(G_CHECKSUM_SHA256, address != nullptr ? address : "", -1));
  return std::string(folder) + "/vellora-" + std::string(bus.get(), 16) + ".lock";
}

int openMark(int flags) {
  const std::string path = markPath();
  return path.empty() ? -1 : ::open(path.c_str(), flags | O_CLOEXEC | O_NOFOLLOW, 0600);
}

}  // namespace

RunningMark::RunningMark() : file_(openMark(O_RDWR | O_CREAT)) {
  struct flock all {};
  all.l_type = F_RDLCK;
  if (file_ >= 0) ::fcntl(file_, F_OFD_SETLK, &all);
}

RunningMark::~RunningMark() {
  if (file_ >= 0) ::close(file_);
}

bool RunningMark::isSet() {
  const int file = openMark(O_RDWR);
  if (file < 0) return false;
  struct flock all {};
  all.l_type = F_WRLCK;  // which would not be to be had beside another's
  const bool known = ::fcntl(file, F_OFD_GETLK, &all) == 0;
  ::close(file);
  return known && all.l_type != F_UNLCK;
}

}  // namespace vellora
