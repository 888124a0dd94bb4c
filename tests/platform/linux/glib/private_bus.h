#pragma once

#include <functional>

#include <gio/gio.h>

#include "platform/linux/glib/glib_ptr.h"

namespace vellora {

// A session bus of the test's own; DBUS_SESSION_BUS_ADDRESS names it while it lives. The daemon is
// ended by its process id, also when the test crashes.
class PrivateBus {
 public:
  PrivateBus() : bus_(g_test_dbus_new(G_TEST_DBUS_NONE)) { g_test_dbus_up(bus_.get()); }
  ~PrivateBus() {
    g_test_dbus_stop(bus_.get());
    g_test_dbus_unset();
  }
  PrivateBus(const PrivateBus&) = delete;
  PrivateBus& operator=(const PrivateBus&) = delete;

  // A connection beside the process's shared one.
  GObjectPtr<GDBusConnection> connect() const {
    return GObjectPtr<GDBusConnection>(g_dbus_connection_new_for_address_sync(
        g_test_dbus_get_bus_address(bus_.get()),
        GDBusConnectionFlags(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                             G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, nullptr));
  }

 private:
  GObjectPtr<GTestDBus> bus_;
};

// Environment for a test that must find no session bus.
inline void leaveSessionBus() {
  g_unsetenv("DBUS_SESSION_BUS_ADDRESS");
  g_unsetenv("XDG_RUNTIME_DIR");
}

// Runs the main thread's event loop until `condition` holds; false when it does not within
// `seconds`.
inline bool runLoopUntil(const std::function<bool()>& condition, double seconds = 20) {
  const auto end = g_get_monotonic_time() + static_cast<gint64>(seconds * 1e6);
  const GSourcePtr alarm(g_timeout_source_new(5));
  g_source_set_callback(
      alarm.get(), [](gpointer) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr, nullptr);
  g_source_attach(alarm.get(), nullptr);
  while (!condition()) {
    if (g_get_monotonic_time() > end) return false;
    g_main_context_iteration(nullptr, TRUE);
  }
  return true;
}

}  // namespace vellora
