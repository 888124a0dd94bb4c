#include "platform/linux/wayland/session/bounded_connection.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <string>

#include <poll.h>

#include "base/environment.h"
#include "platform/linux/socket/local_socket.h"

namespace vellora {
namespace {

std::string pathOf(const std::string& name) {
  if (name.empty() || name.front() == '/') return name;
  const auto folder = environmentFolder("XDG_RUNTIME_DIR");
  return folder ? (*folder / name).native() : std::string();
}

}  // namespace

WlDisplayPtr connectToCompositor(const char* name, const Deadline& deadline) {
  const std::string path = pathOf(name == nullptr ? "" : name);
  if (path.empty()) return nullptr;
  LocalSocket socket;
  while (!socket.connectTo(path)) {
    // Too many wait to be taken in already; there is nothing by which to see that one was.
    constexpr int lookAgain = 20;
    if ((errno != EAGAIN && errno != EINTR) || deadline.passed()) return nullptr;
    ::poll(nullptr, 0, std::min(lookAgain, deadline.remainingMilliseconds()));
  }
  WlDisplayPtr display(wl_display_connect_to_fd(socket.fd()));
  if (display) socket.release();  // it is closed with the connection
  return display;
}

bool exchangeUntil(wl_display* display, const std::function<bool()>& done,
                   const Deadline& deadline) {
  while (true) {
    if (wl_display_dispatch_pending(display) < 0) return false;
    if (done()) return true;
    if (wl_display_prepare_read(display) != 0) continue;
    const bool sent = wl_display_flush(display) >= 0;
    pollfd entry{wl_display_get_fd(display), static_cast<short>(sent ? POLLIN : POLLIN | POLLOUT),
                 0};
    const int left = deadline.remainingMilliseconds();
    const int ready = left > 0 ? ::poll(&entry, 1, left) : 0;
    if (ready <= 0 || (entry.revents & ~POLLOUT) == 0) {
      const bool interrupted = ready > 0 || (ready < 0 && errno == EINTR);
      wl_display_cancel_read(display);
      if (!interrupted) return false;
      continue;
    }
    if (wl_display_read_events(display) < 0) return false;
  }
}

}  // namespace vellora
