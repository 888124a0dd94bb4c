#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

#include "platform/linux/x11/x_session.h"

namespace vellora {

// A question for the process at the other end of the connection that made a window, as the server
// sees it (X-Resource extension, QueryClientIds), asked but not yet taken. Main thread.
class WindowProcessQuestion {
 public:
  WindowProcessQuestion(const XSession& session, xcb_window_t window);

  // Nothing where the server does not tell, or the client is on another host. Once.
  std::optional<std::int32_t> take();

 private:
  xcb_connection_t* connection_;
  std::optional<unsigned int> sequence_;  // of the question, where it could be asked
};

// The number here of the process that calls itself `named` (_NET_WM_PID; 0: it does not, as GTK
// does not in Flatpak) and is `client` for the server: where the client runs in a process namespace
// of its own, in which its number is `named`, or which it does not tell, that is `client`; else
// `named`. `proc` is where the kernel's process information is mounted.
std::int32_t processHere(std::int32_t named, std::optional<std::int32_t> client,
                         const std::filesystem::path& proc = "/proc");

}  // namespace vellora
