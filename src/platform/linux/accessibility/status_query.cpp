#include "platform/linux/accessibility/status_query.h"

#include <memory>
#include <utility>

namespace vellora {

namespace {

constexpr const char* service = "org.a11y.Bus";
constexpr const char* path = "/org/a11y/bus";
constexpr const char* properties = "org.freedesktop.DBus.Properties";
constexpr const char* status = "org.a11y.Status";
constexpr const char* isEnabled = "IsEnabled";

}  // namespace

void askAccessibilityStatus(BusConnection& session,
                            std::function<void(const std::optional<AccessibilityStatus>&)> answer) {
  auto found = std::make_shared<std::optional<AccessibilityStatus>>();
  session.send(session.newCall(service, path, service, "GetAddress"),
               [found](sd_bus_message* reply) {
                 const char* address = nullptr;
                 if (reply != nullptr && sd_bus_message_read(reply, "s", &address) > 0) {
                   *found = {address, false};
                 }
               });
  BusMessagePtr call = session.newCall(service, path, properties, "Get");
  if (call) sd_bus_message_append(call.get(), "ss", status, isEnabled);
  session.send(std::move(call), [found, answer = std::move(answer)](sd_bus_message* reply) {
    int enabled = 0;
    if (reply == nullptr || sd_bus_message_read(reply, "v", "b", &enabled) <= 0) found->reset();
    if (*found) (*found)->isEnabled = enabled != 0;
    answer(*found);
  });
}

void enableAccessibility(BusConnection& session, std::function<void()> done) {
  BusMessagePtr call = session.newCall(service, path, properties, "Set");
  if (call) {
    sd_bus_message_set_auto_start(call.get(), 1);
    sd_bus_message_append(call.get(), "ssv", status, isEnabled, "b", 1);
  }
  session.send(std::move(call), [done = std::move(done)](sd_bus_message*) { done(); });
}

}  // namespace vellora
