#include "platform/linux/glib/session_bus.h"

#include <chrono>
#include <future>
#include <optional>
#include <string>
#include <thread>
#include <utility>

namespace vellora {
namespace {

// Without this look GLib would fall back to dbus-launch, which starts a bus that nobody ends.
bool sessionBusIsNamed() {
  const char* address = g_getenv("DBUS_SESSION_BUS_ADDRESS");
  if (address != nullptr && *address != '\0') return true;
  const char* folder = g_getenv("XDG_RUNTIME_DIR");
  return folder != nullptr &&
         g_file_test((std::string(folder) + "/bus").c_str(), G_FILE_TEST_EXISTS) != FALSE;
}

constexpr std::chrono::milliseconds longestWait{1000};

// What has become of a connection that was asked for, on a thread of its own: there may be
// something at the bus's address that never answers.
class Attempt {
 public:
  Attempt() {
    std::packaged_task<SessionBus()> connect(
        [] { return SessionBus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr)); });
    bus_ = connect.get_future();
    std::thread(std::move(connect)).detach();
  }

  // Waits once; later it is only looked whether there was an answer meanwhile.
  bool isOver() {
    const auto patience = std::exchange(waited_, true) ? std::chrono::milliseconds{} : longestWait;
    return bus_.wait_for(patience) == std::future_status::ready;
  }
  SessionBus take() { return bus_.get(); }

 private:
  std::future<SessionBus> bus_;
  bool waited_ = false;
};

}  // namespace

SessionBus connectToSessionBus() {
  static std::optional<Attempt> underWay;
  if (!underWay) {
    if (!sessionBusIsNamed()) return nullptr;
    underWay.emplace();
  }
  if (!underWay->isOver()) return nullptr;
  SessionBus bus = underWay->take();
  underWay.reset();
  if (bus) g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
  return bus;
}

}  // namespace vellora
