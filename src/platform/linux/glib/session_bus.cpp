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

SessionBus connect() {
  SessionBus bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
  if (bus) g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
  return bus;
}

// What has become of a connection that was asked for, on a thread of its own: there may be
// something at the bus's address that never answers.
class Attempt {
 public:
  Attempt() {
    std::packaged_task<SessionBus()> connecting(connect);
    bus_ = connecting.get_future();
    std::thread(std::move(connecting)).detach();
  }

  // Waits once; later it is only looked whether there was an answer meanwhile.
  bool isOver(std::chrono::milliseconds patience) {
    if (std::exchange(waited_, true)) patience = {};
    return bus_.wait_for(patience) == std::future_status::ready;
  }
  SessionBus take() { return bus_.get(); }

 private:
  std::future<SessionBus> bus_;
  bool waited_ = false;
};

}  // namespace

SessionBus connectToSessionBus(std::chrono::milliseconds patience) {
  static std::optional<Attempt> underWay;
  if (!underWay) {
    if (!sessionBusIsNamed()) return nullptr;
    underWay.emplace();
  }
  if (!underWay->isOver(patience)) return nullptr;
  SessionBus bus = underWay->take();
  underWay.reset();
  // GLib gives the last connection to everybody until the last holder has given it up.
  if (bus && g_dbus_connection_is_closed(bus.get()) != FALSE) return nullptr;
  return bus;
}

}  // namespace vellora
