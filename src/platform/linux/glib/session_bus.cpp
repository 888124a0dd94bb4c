#include "platform/linux/glib/session_bus.h"

#include <string>

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

}  // namespace

SessionBus connectToSessionBus() {
  if (!sessionBusIsNamed()) return nullptr;
  SessionBus bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
  if (bus) g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
  return bus;
}

}  // namespace vellora
