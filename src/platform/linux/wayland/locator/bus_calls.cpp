#include "platform/linux/wayland/locator/bus_calls.h"

namespace vellora {

namespace {

struct Pending {
  std::weak_ptr<bool> alive;
  std::function<void(GVariant* answer)> answered;
};

void finish(GObject* bus, GAsyncResult* result, gpointer data) noexcept {
  const std::unique_ptr<Pending> pending(static_cast<Pending*>(data));
  const GVariantPtr answer(g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, nullptr));
  if (!pending->alive.expired()) pending->answered(answer.get());
}

}  // namespace

void BusCalls::call(const Method& method, GVariant* arguments, const GVariantType* type,
                    std::chrono::milliseconds timeout,
                    std::function<void(GVariant* answer)> answered) {
  auto pending = std::make_unique<Pending>(Pending{alive_, std::move(answered)});
  g_dbus_connection_call(bus_.get(), method.service, method.path, method.interface, method.name,
                         arguments, type, G_DBUS_CALL_FLAGS_NO_AUTO_START,
                         static_cast<gint>(timeout.count()), nullptr, finish, pending.release());
}

}  // namespace vellora
